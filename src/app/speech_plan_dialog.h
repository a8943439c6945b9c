// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

#include "editor/speech_matching.h"

class QLabel;
class QPushButton;

namespace tessaly {

class PlanModel;

/// Shows which file would be whose before speech files are added. Titles and languages can be
/// corrected, and lines left out; what follows from a correction is shown at once.
class SpeechPlanDialog : public QDialog {
    Q_OBJECT

 public:
    SpeechPlanDialog(const Project& project, const SpeechPlan& plan, QWidget* parent);

    /// The plan as it was corrected.
    const SpeechPlan& plan() const;

 private:
    void showWords();

    PlanModel* model_;
    QLabel* words_;
    QPushButton* add_;
};

}  // namespace tessaly
