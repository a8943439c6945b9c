// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <memory>

#include "card/card_guards.h"
#include "card/card_writer.h"
#include "platform/paths.h"

namespace tessaly {

/// One run, from the question to the finished card.
class CardRun {
 public:
    CardRun(FileSystem& files, const Drives& drives, CardJob job, CardRunObserver& observer);

    /// Asks, numbers the files of `project`, and works on a copy of it from then on. Nothing on the
    /// card changes before every check has passed. Never throws a TessalyError. Called once.
    CardRunReport run(Project& project);

 private:
    // In their order; each sets its step code and throws a TessalyError when it fails.
    void checkSources();
    void buildImage();
    void checkTarget();
    void deleteOldSettings();
    void eraseCard();
    void copyTracks();
    void copyFixedFiles();
    void writeProjectFile();
    void copyProjectFile();
    void flush();
    void compare();  ///< lets go of the card at its end
    void deleteTemporaryFiles();

    QList<SourceFile> filesToWrite() const;
    SpacePlan spacePlan(const VolumeGeometry& geometry);
    QString work(const QString& name) const;
    void requireSameCard() const;
    void writeWhole(const QString& path, const QByteArray& bytes);
    void copyToCard(const QString& source, const QString& name);
    void writeToCard(const QByteArray& bytes, const QString& name);
    void beginFile(const QString& name);
    void noteWritten(const WrittenFile& file);
    bool compareFile(const WrittenFile& file);  ///< whether it was read past the cache
    void deleteFromCard(const QString& name);
    void removeTree(const QString& folder);

    void step(int code);
    void beginPhase(RunPhase phase, qint64 total);
    void advance(qint64 bytes);
    void showProgress();
    void checkForStop();
    void checkForStopAtTimes();

    FileSystem& files_;
    const Drives& drives_;
    const CardJob job_;
    const QString root_;
    CardRunObserver& observer_;
    RunProgress progress_;
    CardRunReport report_;

    CardIdentity card_;  // the one that the question was about
    Project snapshot_;
    SourceFiles sources_;
    QByteArray hex_;
    QByteArray projectBytes_;
    QList<SourceFile> settings_;  // the files that every run writes, as planned
    std::unique_ptr<OutputFile> projectFile_;
    std::unique_ptr<OpenFolder> folder_;  // the card, held open from the first guard on

    QElapsedTimer phaseTimer_;
    QElapsedTimer stopTimer_;
};

}  // namespace tessaly
