#pragma once

#include <QElapsedTimer>
#include <memory>
#include <utility>

#include "card/card_guards.h"
#include "card/card_space.h"
#include "card/card_writer.h"
#include "card/file_copier.h"
#include "card/source_files.h"
#include "platform/paths.h"

namespace tessaly {

/// The card's root with the system's separators, the last one included.
QString rootOf(const CardJob& job);

/// One run from the snapshot of a project to a finished card. Every step sets the step code first
/// and throws a TessalyError when it fails; nothing on the card changes before checkTarget() has
/// passed. The steps are called in their order.
class CardRun {
 public:
    CardRun(FileSystem& files, const Drives& drives, CardJob job, CardIdentity card,
            Project snapshot, bool settingsOnly, int& stepCode, CardRunObserver& observer,
            CardRunReport& report);

    void checkSources();       ///< sources and the maker's files are there, the limits are kept
    void buildImage();         ///< image, its HEX text and the project, in the work folder
    void checkTarget();        ///< every guard; from here on the card is held open
    void deleteOldSettings();  ///< deletes what an update of the settings writes anew
    void eraseCard();          ///< deletes everything but what the system holds
    void copyTracks();         ///< the numbered files; none of them in an update
    void copyFixedFiles();     ///< settings, the maker's files, the chime
    void writeProjectFile();   ///< in the work folder
    void copyProjectFile();    ///< seals the card
    void settleAndVerify();    ///< flushes the card, compares what reads back, lets go of the card
    void deleteTemporaryFiles();

 private:
    void step(int code) { stepCode_ = code; }
    QString work(const char* name) const { return pathIn(job_.workFolder, name); }
    bool hasChime() const { return usesChimeFile(snapshot_); }
    SpacePlan spacePlan(const VolumeGeometry& geometry);
    QList<std::pair<QString, qint64>> settingsFiles() const;

    void beginPhase(RunPhase phase, qint64 total);
    void advance(qint64 bytes);
    void checkForStop();
    void breatheAtTimes();
    void writeWhole(const QString& path, const QByteArray& bytes);
    void copyToCard(const QString& source, const QString& name);
    void writeToCard(const QByteArray& bytes, const QString& name);
    void noteWritten(const WrittenFile& file);
    void requireSameCard() const;
    void deleteFromCard(const QString& name);
    void removeTree(const QString& folder);

    FileSystem& files_;
    const Drives& drives_;
    const CardJob job_;
    const QString root_;
    const CardIdentity card_;
    const Project snapshot_;
    const bool settingsOnly_;
    int& stepCode_;
    CardRunObserver& observer_;
    CardRunReport& report_;

    SourceFiles sources_;  // as checkSources() found them
    QByteArray hex_;
    QByteArray projectBytes_;
    std::unique_ptr<OutputFile> projectFile_;
    std::unique_ptr<OpenFolder> folder_;  // the card, held open from the first guard on
    QList<WrittenFile> written_;

    RunPhase phase_ = RunPhase::Prepare;
    QElapsedTimer phaseTimer_;
    QElapsedTimer breathTimer_;
    qint64 phaseDone_ = 0;
    qint64 phaseTotal_ = 0;
};

}  // namespace tessaly
