// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/page.h"

#include <QKeyEvent>
#include <QLayout>
#include <QPushButton>

namespace tessaly {

namespace {

// What is on a page becomes as low as it can, its lists too, before the page scrolls.
class Contents : public QWidget {
 public:
    bool hasHeightForWidth() const override { return layout() && layout()->hasHeightForWidth(); }
    int heightForWidth(int width) const override {
        return layout()->totalMinimumHeightForWidth(width);
    }
};

}  // namespace

bool isEnter(const QKeyEvent& event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool pressFocusedButton(const QKeyEvent& event, const QWidget& widget) {
    auto* button = qobject_cast<QAbstractButton*>(widget.focusWidget());
    if (!isEnter(event) || !button)
        return false;
    button->click();
    return true;
}

Page::Page(QWidget* parent) : QScrollArea(parent) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setWidget(new Contents);
}

void Page::setDefaultButton(QPushButton* button) {
    Q_ASSERT(!button || isAncestorOf(button));
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

bool Page::hasEnabledDefault() const {
    return default_ && default_->isEnabled();
}

// Outside dialogs Qt draws a default button but gives it no key.
void Page::keyPressEvent(QKeyEvent* event) {
    if (pressFocusedButton(*event, *this))
        return;
    if (isEnter(*event) && hasEnabledDefault())
        default_->click();
    else
        QScrollArea::keyPressEvent(event);
}

}  // namespace tessaly
