// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/check_panel.h"

#include <QAbstractButton>
#include <QGridLayout>
#include <QLabel>
#include <QListWidget>
#include <algorithm>

#include "app/list_section.h"
#include "app/small_widgets.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

constexpr int LinesShown = 12;
constexpr int LeastListHeight = 48;
constexpr int SentenceColumn = 1, ButtonColumn = 2;

void showOffenders(const QStringList& offenders, QListWidget* list) {
    list->clear();
    for (const QString& offender : offenders)
        list->addItem(elided(offender));
    list->setVisible(!offenders.isEmpty());
    if (offenders.isEmpty())
        return;
    list->setCurrentRow(0);
    const int lines = int(std::min<qsizetype>(offenders.size() + 1, LinesShown));
    list->setMaximumHeight(lines * list->sizeHintForRow(0) + 2 * list->frameWidth());
}

}  // namespace

CheckPanel::CheckPanel(QWidget* parent) : QGroupBox(parent), grid_(new QGridLayout(this)) {}

void CheckPanel::setNames(const QString& names) {
    Q_ASSERT(rows_.isEmpty());  // the rows are made once
    names_ = names;
    for (const QString& name : names.split(u' ')) {
        QWidget* widget = nullptr;
        if (name.startsWith(u"crc")) {
            rows_.append({.circle = new StatusCircle(this)});
            widget = rows_.last().circle;
            grid_->addWidget(widget, grid_->rowCount(), 0, Qt::AlignTop);
        } else if (name.startsWith(u"lbl")) {
            auto* label = new QLabel(this);
            label->setWordWrap(true);
            QSizePolicy policy = label->sizePolicy();
            policy.setHorizontalPolicy(QSizePolicy::Expanding);
            policy.setHorizontalStretch(1);
            label->setSizePolicy(policy);
            widget = rows_.last().label = label;
            grid_->addWidget(label, grid_->rowCount() - 1, SentenceColumn, 1, 2);
        } else {
            auto* list = new QListWidget(this);
            list->setFont(fixedFont(font()));
            list->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
            list->setMinimumHeight(LeastListHeight);
            widget = rows_.last().list = list;
            grid_->addWidget(list, grid_->rowCount(), SentenceColumn, 1, 2);
        }
        widget->setObjectName(name);
        widget->hide();
    }
}

void CheckPanel::showResult(const CheckResult& result, int row) {
    const auto [circle, label, list] = rows_.at(row);
    circle->setVerdict(result.verdict);
    circle->setVisible(!result.text.isEmpty());
    label->setText(result.text);
    label->setEnabled(result.isEnabled);
    label->setVisible(!result.text.isEmpty());
    if (!list)
        return;
    list->setAccessibleName(title());
    showOffenders(result.offenders, list);
}

void CheckPanel::addBeside(QAbstractButton* button) {
    for (int row = 0; row < rows_.size(); ++row)  // no longer across the button's column
        grid_->addWidget(rows_[row].label, row + 1, SentenceColumn);
    const bool hasList = rows_.first().list;
    grid_->addWidget(button, 1, ButtonColumn, hasList ? 1 : int(rows_.size()), 1,
                     hasList ? Qt::AlignTop : Qt::AlignVCenter);
    if (hasList)
        setTabOrder(button, rows_.first().list);
}

void CheckPanel::addAbove(QLabel* label, QAbstractButton* button) {
    grid_->addWidget(label, 0, 0, 1, ButtonColumn);
    grid_->addWidget(button, 0, ButtonColumn, Qt::AlignRight);
}

}  // namespace tessaly
