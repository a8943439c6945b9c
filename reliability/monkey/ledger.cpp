// SPDX-License-Identifier: GPL-3.0-or-later
#include "ledger.h"

#include <malloc.h>

#include <QApplication>

#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/project_snapshot.h"
#include "model/recovery.h"
#include "platform/error.h"

#if defined(__SANITIZE_ADDRESS__)
extern "C" size_t __sanitizer_get_current_allocated_bytes();  // no header of GCC declares it
#endif

namespace tessaly::monkey {

namespace {

constexpr qint64 HeapAllowed = 24 * 1024 * 1024;  // more than when the monkey began
constexpr int WidgetsAllowed = 600;

// What raises the mark when it changes: everything but the order of lines, the endless loop, the
// power-up item and the default languages.
QStringList markedContent(const Project& project) {
    QStringList words = project.lstSpTitles + project.lstLangs;
    for (const QString& list : project.lstMuList) {
        words.append("list " + list);
        for (const QString& track : tracksOfMusicList(project, list))
            words.append(list + " / " + track);
    }
    const auto add = [&](const TrackRecord& record) {
        words.append(record.kind.text() + '|' + record.itemName.text() + '|' +
                     record.groupName.text() + '|' + record.sourcePath.text() +
                     (record.loudVolume.isTrue() ? "|loud" : "") +
                     (record.cancelOnInterrupt.isTrue() ? "|cancel" : ""));
    };
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            add(record);
    for (const TrackRecord& record : project.SystemTextTable)
        add(record);
    for (const TrackRecord& record : project.TriggerTable)
        if (isAssigned(record))
            add(record);
    words.sort();
    words +=
        {project.txtCardTitle1, project.txtCardTitle2, project.txtChimeFileName, project.cfDrive,
         QString("chime %1%2%3%4%5")
             .arg(project.buttChimeAlways)
             .arg(project.buttChimeOnce)
             .arg(project.buttPlayExtChime)
             .arg(project.buttPlayIntChime)
             .arg(project.buttDisableChime)};
    return words;
}

// Without the triggers that are free: those keep the names of what they once played.
QList<TrackRecord> recordsThatCount(const Project& project) {
    QList<TrackRecord> records = projectRecords(project);
    for (qsizetype i = records.size() - 1; i >= records.size() - TriggerSlots; --i)
        if (!isAssigned(records[i]))
            records[i] = TrackRecord();
    return records;
}

// The project without what no edit changes: what is on view, the flag, the numbers of a card. Of
// the default languages those that are gone are taken out whenever they are shown; see
// sameContent().
Project edited(Project project) {
    project.unsavedChanges = project.suppressTriggerEvents = false;
    project.currentMusicList = 0;
    project.DefaultLanguageTable.clear();
    project.DefaultLanguageCopy.clear();
    for (TrackRecord& record : project.TrackTable)
        record.typeTag = {};
    return project;
}

}  // namespace

Ledger::Ledger(World& world)
    : world_(world),
      untouchables_(world.untouchables()),
      places_(world.places()),
      before_(world.bench.current),
      clean_(markedContent(before_)) {}

QStringList Ledger::afterEvent() {
    const QStringList wrong = loss() + mark();
    before_ = world_.bench.current;
    differed_ = world_.bench.session.differs();
    couldBringBack_ = world_.bench.session.canBringBack();
    return wrong;
}

QStringList Ledger::mark() {
    const Project& project = world_.bench.current;
    const bool wasMarked = std::exchange(wasMarked_, project.unsavedChanges);
    QStringList wrong;
    if (world_.happenings.sessionChanged ||
        (couldBringBack_ && !world_.bench.session.canBringBack()))
        start_.reset();
    if (world_.happenings.undone && project.unsavedChanges != world_.bench.session.differs())
        wrong.append("after Undo the mark says something else than the file");
    if (project.unsavedChanges)
        return wrong;
    const QStringList now = markedContent(project);
    const Happenings& happened = world_.happenings;
    const bool sessionChanged = happened.sessionChanged || happened.undone ||
                                (couldBringBack_ && !world_.bench.session.canBringBack());
    if (wasMarked && !sessionChanged && !happened.ranCard) {
        QFile file(world_.bench.session.fileName());
        if (!file.open(QIODevice::ReadOnly) || file.readAll() != encodeProject(project))
            wrong.append("the mark went although nothing was saved");
    } else if (!wasMarked && !sessionChanged && now != clean_) {
        wrong.append("changed without a mark: " + (now.join('\n').isEmpty() ? "" : now.last()));
    }
    clean_ = now;
    return wrong;
}

// What was open and not saved must be the newest recovery copy.
QStringList Ledger::loss() const {
    const Project& project = world_.bench.current;
    if (!world_.happenings.keepCopyBeforeDiscard || !differed_ || world_.faulty() ||
        sameContent(project, before_))
        return {};
    const QDir folder(world_.bench.scratch.path("user/recovery"));
    const QStringList names = folder.entryList({"*.recovery"}, QDir::Files, QDir::Name);
    // One that could not be removed when files failed goes with the next copy.
    if (names.size() > 3 * RecoveryFolder::StretchesKept)
        return {QString("%1 recovery copies").arg(names.size())};
    for (qsizetype newer = 0; newer < names.size(); ++newer) {
        QFile file(folder.filePath(names[names.size() - 1 - newer]));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const auto copy = decodeSnapshot(file.readAll());
        if (!copy || !sameContent(*copy, before_))
            continue;
        if (newer > 0)
            return {QString("what was open is a recovery copy, but %1 are newer").arg(newer)};
        return {};
    }
    return {"there is no recovery copy of what was open"};
}

QStringList Ledger::savedAndReadBack() {
    const Project& project = world_.bench.current;
    LocalFileSystem files;
    const QString path = world_.bench.scratch.path("mine/check.crd2");
    Project copy = project, back;
    try {
        saveProject(files, path, copy);
        const ReadReport report = readProject(files, path, back);
        QFile::remove(path);
        if (!report.isComplete)
            return {"the saved project is read only up to " + report.stopReason};
    } catch (const TessalyError& error) {
        return {"the project cannot be saved: " + error.description};
    }
    // Names that only the missing characters tell apart become one.
    if (!textsOutsideCodePage(project).isEmpty() || !pathsOutsideCodePage(project).isEmpty())
        return {};
    QStringList wrong;
    const auto first = recordsThatCount(copy), second = recordsThatCount(back);
    if (first != second)
        wrong.append("saved, read and saved again is another file");
    if (back.lstSpTitles != project.lstSpTitles || back.lstLangs != project.lstLangs)
        wrong.append("titles or languages are not read back");
    QStringList lists = project.lstMuList;
    for (const QString& list : listsWithoutFile(project))
        lists.removeAll(list);
    if (back.lstMuList != lists)
        wrong.append("music lists are not read back");
    return wrong;
}

bool Ledger::isNowLike(const Project& other) const {
    const Project& project = world_.bench.current;
    return edited(project) == edited(other) && sameContent(project, other);
}

QAction* Ledger::step(const char* name) const {
    return world_.bench.window->findChild<QAction*>(name);
}

QStringList Ledger::nothingWithoutAStep() {
    if (step("mnuEditUndo")->isEnabled() || step("mnuEditRedo")->isEnabled())
        return {};
    QStringList wrong;
    if (start_ && !isNowLike(*start_))
        wrong.append("an edit made no step that can be undone");
    start_ = world_.bench.current;
    return wrong;
}

QStringList Ledger::undoneAndRedone() {
    const Project& project = world_.bench.current;
    const Project now = project;
    int steps = 0;
    for (; step("mnuEditUndo")->isEnabled(); ++steps)
        step("mnuEditUndo")->trigger();
    QStringList wrong;
    if (start_ && !isNowLike(*start_))
        wrong.append(QString("%1 steps undone do not lead to the start").arg(steps));
    start_ = project;
    for (int redone = 0; redone < steps; ++redone)
        step("mnuEditRedo")->trigger();
    if (!isNowLike(now))
        wrong.append(QString("%1 steps undone and redone are another project").arg(steps));
    before_ = project;
    wasMarked_ = project.unsavedChanges;
    clean_ = markedContent(project);
    return wrong;
}

QStringList Ledger::outside() const {
    QStringList wrong;
    const auto now = world_.untouchables();
    for (auto it = untouchables_.begin(); it != untouchables_.end(); ++it)
        if (!now.contains(it.key()) || now[it.key()] != it.value())
            wrong.append("gone or changed: " + it.key());
    for (const QString& name : now.keys())
        if (!untouchables_.contains(name))
            wrong.append("made outside the card: " + name);
    if (world_.places() != places_)
        wrong.append("made outside the card: " + world_.places().join(", "));
    return wrong;
}

qint64 Ledger::heapBytes() {
#if defined(__SANITIZE_ADDRESS__)
    return qint64(__sanitizer_get_current_allocated_bytes());
#else
    return qint64(mallinfo2().uordblks);
#endif
}

QStringList Ledger::growth() {
    QStringList wrong;
    const qint64 heap = heapBytes();
    if (mostHeap_ == 0)
        mostHeap_ = heap + HeapAllowed;
    if (heap > mostHeap_)
        wrong.append(QString("%1 bytes on the heap").arg(heap));
    if (QApplication::allWidgets().size() > WidgetsAllowed)
        wrong.append(QString("%1 widgets").arg(QApplication::allWidgets().size()));
    return wrong;
}

}  // namespace tessaly::monkey
