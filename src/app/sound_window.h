// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <optional>

#include "app/prompts.h"
#include "card/sound_checks.h"
#include "editor/find.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace tessaly {

class LoudnessChart;
class SoundModel;
class SoundTable;

/// Where the item of a sound is edited; nothing where no line shows it.
std::optional<Place> placeOf(const Project& project, const ItemSound& item);

/// Decodes the files of a project that are not known yet, with a progress that can be cancelled,
/// and shows above `parent` what is known of all. Returns the place that the operator wants to go
/// to; nothing when they only looked.
std::optional<Place> showSoundCheck(const Project& project, const Services& services,
                                    QWidget* parent);

/// How the files of a project sound: a picture of their loudness and a table of everything that was
/// found.
class SoundWindow : public QDialog {
    Q_OBJECT

 public:
    /// `sounds` are those of `project`, those of a list together.
    SoundWindow(const Project& project, const QList<ItemSound>& sounds, QWidget* parent);

    /// The place of the row that was chosen when it was accepted.
    std::optional<Place> place() const;

 private:
    void showFiles();
    void showCurrent();
    void filter();
    void goToSound(int sound);
    void copy() const;
    int currentSound() const;
    QString describe(int sound) const;

    const Project project_;
    const QList<ItemSound> sounds_;
    SoundModel* model_;
    SoundTable* table_;
    LoudnessChart* chart_;
    QLabel* words_;
    QCheckBox* onlyFindings_;
    QPushButton* goThere_;
};

}  // namespace tessaly
