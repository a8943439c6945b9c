#include "app/page.h"

#include <QKeyEvent>
#include <QPushButton>

namespace tessaly {

void Page::setDefaultButton(QPushButton* button) {
    if (default_)
        default_->setDefault(false);
    default_ = button;
    if (default_)
        default_->setDefault(true);
}

void Page::unsetDefaultButton(QPushButton* button) {
    if (default_ == button)
        setDefaultButton(nullptr);
}

// Outside dialogs Qt draws a default button but gives it no key.
void Page::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && default_ && default_->isEnabled())
        default_->click();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace tessaly
