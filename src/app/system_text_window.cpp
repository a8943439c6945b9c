// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/system_text_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStyle>
#include <QVBoxLayout>

#include "app/display_preview.h"
#include "app/page.h"
#include "app/small_widgets.h"
#include "model/display_text.h"

namespace tessaly {

using namespace Qt::StringLiterals;

SystemTextWindow::SystemTextWindow(Project& project, Prompts& prompts, QWidget* parent)
    : QWidget(parent, Qt::Window),
      project_(project),
      previewText_(new DisplayPreview),
      lblLength_(new QLabel) {
    setObjectName(u"frmSystemText"_s);
    setWindowTitle(u"Change System Text"_s);
    previewText_->setObjectName(u"previewText"_s);
    previewText_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    previewText_->setLineCount(1);
    lblLength_->setObjectName(u"lblLength"_s);
    QScrollArea* scroll = makeRows(prompts);
    auto* layout = new QVBoxLayout(this);
    auto* shown = new QHBoxLayout;
    layout->addWidget(scroll);
    layout->addLayout(shown);
    layout->addLayout(makeButtons());
    shown->addWidget(previewText_);
    shown->addWidget(lblLength_);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        for (int row = 0; row < SystemTextsUsed; ++row)
            if (edits_[size_t(row)] == now)
                preview(row);
    });
    // As high as all rows, if the screen is; else they scroll. The length keeps its room, so that
    // the display beside it keeps its size.
    lblLength_->setMinimumWidth(
        fontMetrics().horizontalAdvance(displayLengthText(QString(99, u'-'))));
    const QSize rows = scroll->widget()->sizeHint();
    scroll->setMinimumWidth(rows.width() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    const QSize all = sizeHint() + QSize(0, rows.height() - scroll->sizeHint().height());
    const QSize frame(0, style()->pixelMetric(QStyle::PM_TitleBarHeight));
    resize(all.boundedTo(screen()->availableSize() - frame));
    projectReplaced();
}

QScrollArea* SystemTextWindow::makeRows(Prompts& prompts) {
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(u"scrollRows"_s);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    auto* rows = new QWidget;
    auto* grid = new QGridLayout(rows);
    grid->setVerticalSpacing(3);
    grid->addWidget(new QLabel(u"Original Text"_s), 0, 0);
    grid->addWidget(new QLabel(u"Replacement Text"_s), 0, 1);
    const QFont fixed = fixedFont(font());
    for (int row = 0; row < SystemTextsUsed; ++row) {
        auto* original = new QLabel(originalSystemText(row));
        original->setObjectName(u"lblSystemText_%1"_s.arg(row));
        original->setFont(fixed);
        auto* edit = new LimitedLineEdit;
        edit->setObjectName(u"txtSystemText_%1"_s.arg(row));
        edit->setAccessibleName(u"Replacement of text %1"_s.arg(row));
        edit->setFont(fixed);
        grid->addWidget(original, row + 1, 0);
        grid->addWidget(edit, row + 1, 1);
        edits_[size_t(row)] = edit;
        connect(edit, &QLineEdit::textEdited, this, [this, row] { preview(row); });
        connect(edit, &LimitedLineEdit::keyTyped, this,
                [this, row] { txtSystemText_KeyPress(row); });
        connect(edit, &LimitedLineEdit::refused, this, [&prompts] { prompts.beep(); });
    }
    scroll->setWidget(rows);
    return scroll;
}

QLayout* SystemTextWindow::makeButtons() {
    auto* layout = new QHBoxLayout;
    const auto add = [&](const QString& name, const QString& text,
                         void (SystemTextWindow::*handler)()) {
        auto* button = new QPushButton(text);
        button->setObjectName(name);
        connect(button, &QPushButton::clicked, this, handler);
        layout->addWidget(button);
    };
    add(u"buttSystemTextRestore"_s, u"&Restore Original Text"_s,
        &SystemTextWindow::buttSystemTextRestore_Click);
    layout->addStretch();
    add(u"buttSystemTextCancel"_s, u"&Cancel"_s, &SystemTextWindow::buttSystemTextCancel_Click);
    add(u"buttSystemTextSave"_s, u"&Save"_s, &SystemTextWindow::buttSystemTextSave_Click);
    return layout;
}

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
    previewText_->setLine(0, text);
    lblLength_->setText(displayLengthText(text));
}

void SystemTextWindow::txtSystemText_KeyPress(int row) {
    preview(row);
}

void SystemTextWindow::buttSystemTextRestore_Click() {
    showBoxes(restoreOriginalTexts(project_));
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
