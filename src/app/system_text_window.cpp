#include "app/system_text_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QScreen>
#include <QStyle>

#include "app/display_preview.h"
#include "app/limited_line_edit.h"
#include "app/list_view_tools.h"
#include "app/page.h"
#include "model/display_text.h"
#include "ui_system_text_window.h"

namespace tessaly {

SystemTextWindow::SystemTextWindow(Project& project, Prompts& prompts, QWidget* parent)
    : QWidget(parent, Qt::Window),
      project_(project),
      ui_(std::make_unique<Ui::SystemTextWindow>()) {
    ui_->setupUi(this);
    ui_->previewText->setLineCount(1);
    const QFont fixed = fixedFont(font());
    for (int row = 0; row < SystemTextsUsed; ++row) {
        auto* original = findChild<QLabel*>(QString("lblSystemText_%1").arg(row));
        original->setFont(fixed);
        original->setText(originalSystemText(row));
        auto* edit = findChild<LimitedLineEdit*>(QString("txtSystemText_%1").arg(row));
        edit->setFont(fixed);
        edits_[size_t(row)] = edit;
        connect(edit, &QLineEdit::textEdited, this, [this, row] { preview(row); });
        connect(edit, &LimitedLineEdit::keyTyped, this, [this, row] { preview(row); });
        connect(edit, &LimitedLineEdit::refused, this, [&prompts] { prompts.beep(); });
    }
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (int row = 0; row < SystemTextsUsed; ++row)
            if (edits_[size_t(row)] == now)
                preview(row);
    });
    connect(ui_->buttSystemTextRestore, &QPushButton::clicked, this,
            &SystemTextWindow::buttSystemTextRestore_Click);
    connect(ui_->buttSystemTextSave, &QPushButton::clicked, this,
            &SystemTextWindow::buttSystemTextSave_Click);
    connect(ui_->buttSystemTextCancel, &QPushButton::clicked, this,
            &SystemTextWindow::buttSystemTextCancel_Click);
    // As high as all rows, if the screen is; else they scroll. The length keeps its room, so that
    // the display beside it keeps its size.
    ui_->lblLength->setMinimumWidth(
        fontMetrics().horizontalAdvance(displayLengthText(QString(99, '-'))));
    const QSize rows = ui_->rows->sizeHint();
    ui_->scrollRows->setMinimumWidth(rows.width() +
                                     style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    const QSize all = sizeHint() + QSize(0, rows.height() - ui_->scrollRows->sizeHint().height());
    const QSize frame(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    resize(all.boundedTo(screen()->availableSize() - frame));
    projectReplaced();
}

SystemTextWindow::~SystemTextWindow() = default;

void SystemTextWindow::projectReplaced() {
    showBoxes(systemTextBoxes(project_));
}

SystemTextBoxes SystemTextWindow::boxes() const {
    SystemTextBoxes texts;
    for (size_t row = 0; row < texts.size(); ++row)
        texts[row] = edits_[row]->text();
    return texts;
}

void SystemTextWindow::showBoxes(const SystemTextBoxes& texts) {
    for (size_t row = 0; row < texts.size(); ++row)
        edits_[row]->setText(texts[row]);
    preview(previewRow_);
}

void SystemTextWindow::preview(int row) {
    previewRow_ = row;
    const QString text = edits_[size_t(row)]->text();
    ui_->previewText->setLine(0, text);
    ui_->lblLength->setText(displayLengthText(text));
}

void SystemTextWindow::buttSystemTextRestore_Click() {
    SystemTextBoxes texts = boxes();
    restoreOriginalTexts(project_, texts);
    showBoxes(texts);
    emit projectChanged();
}

void SystemTextWindow::buttSystemTextSave_Click() {
    saveSystemTexts(project_, boxes());
    hide();
    emit projectChanged();
}

void SystemTextWindow::buttSystemTextCancel_Click() {
    cancelSystemTexts(project_);
    hide();
    emit projectChanged();
}

void SystemTextWindow::closeEvent(QCloseEvent* event) {
    if (event->spontaneous())
        buttSystemTextCancel_Click();
    event->accept();
}

void SystemTextWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        buttSystemTextCancel_Click();
    else if (!pressFocusedButton(*event, *this))
        QWidget::keyPressEvent(event);
}

}  // namespace tessaly
