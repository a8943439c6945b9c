// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QGroupBox>
#include <QTimer>

#include "editor/speech_overview.h"

class QAction;
class QLabel;

namespace tessaly {

class OverviewModel;
class OverviewTable;
class SoundWatch;

/// The section with all titles in all languages: which pairs have a file, and whether it is any
/// good. A sign says that without its colour.
class OverviewSection : public QGroupBox {
    Q_OBJECT

 public:
    OverviewSection(const FileSystem& files, SoundWatch& sounds, QWidget* parent);

    /// Shows the project as it is now with this pair as the current one, and looks for its files.
    void showProject(const Project& project, const SpeechSelection& pair);

    /// Makes a pair the current one, without a signal; where a row is -1, none is.
    void select(const SpeechSelection& pair);

    /// The current pair, and all that are selected.
    SpeechSelection current() const;
    QList<SpeechSelection> selected() const;

    /// Says whether the selected pairs can be left without a file.
    void enableClear(bool isEnabled);
    /// Whether one of the selected pairs has a file.
    bool hasFile() const;

    /// Looks at all files once more.
    void lookAgain();
    /// A further command of the table's context menu.
    QAction* addCommand(const QString& text);

    OverviewTable* table() const { return table_; }

 signals:
    /// Another pair is the current one, or others are selected.
    void selectionMoved();
    /// The operator wants to choose a file for the current pair, to take the files of the selected
    /// ones away.
    void browseChosen();
    void clearChosen();

 protected:
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;

 private:
    QAction* addAction(const QString& name, const QString& text, const QList<QKeySequence>& keys,
                       void (OverviewSection::*does)());
    void goToNextEmpty();
    void showWords();
    void showPlace(const SpeechSelection& place);
    void lookFurther();

    const FileSystem& files_;
    SoundWatch& sounds_;
    OverviewTable* table_;
    OverviewModel* model_;
    QLabel* words_;
    QAction* clear_;
    QTimer looking_;
    bool hasNews_ = false;  ///< something else was found than is shown
    QElapsedTimer shown_;   ///< since the table last showed what was found
};

}  // namespace tessaly
