// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_plan_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "app/speech_plan_table.h"

namespace tessaly {

using namespace Qt::StringLiterals;

SpeechPlanDialog::SpeechPlanDialog(const Project& project, const SpeechPlan& plan, QWidget* parent)
    : QDialog(parent), model_(new PlanModel(project, plan, this)), words_(new QLabel(this)) {
    setWindowTitle(u"Add Speech Files"_s);
    setSizeGripEnabled(true);
    auto* help = new QLabel(
        u"These files would be added.  To correct a title or language, press "_s
        u"F2 or double-click it; several that are selected become alike.  "_s
        u"Files without a tick are left out."_s,
        this);
    auto* table = new PlanTable(model_, this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    help->setWordWrap(true);
    words_->setObjectName(u"lblPlan"_s);
    words_->setWordWrap(true);
    table->setObjectName(u"tblPlan"_s);
    table->setAccessibleName(u"Files to add"_s);
    add_ = buttons->addButton(u"&Add"_s, QDialogButtonBox::AcceptRole);
    add_->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(model_, &QAbstractItemModel::dataChanged, this, &SpeechPlanDialog::showWords);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(help);
    layout->addWidget(table, 1);
    layout->addWidget(words_);
    layout->addWidget(buttons);
    showWords();
    table->setCurrentIndex(model_->index(0, PlanModel::TitleColumn));
    table->setFocus();
    resize(QSize(130 * fontMetrics().averageCharWidth(), 30 * fontMetrics().height())
               .boundedTo(screen()->availableSize() * 9 / 10));
}

const SpeechPlan& SpeechPlanDialog::plan() const {
    return model_->plan();
}

void SpeechPlanDialog::showWords() {
    words_->setText(model_->inWords());
    add_->setEnabled(model_->added() > 0);
}

}  // namespace tessaly
