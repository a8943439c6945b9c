// SPDX-License-Identifier: GPL-3.0-or-later
#include "window_checks.h"

#include <QCheckBox>
#include <QTableView>

#include "card/card_files.h"
#include "editor/speech_editor.h"

namespace tessaly::monkey {

namespace {

// Compares what the page in front shows with the project's own tables; which buttons a core
// function grants is the sessions' matter.
class Comparison {
 public:
    explicit Comparison(const test::WindowBench& bench) : bench_(bench), project_(bench.current) {}

    QStringList wrong;

    template <typename Value>
    void same(const QString& what, const Value& shown, const Value& expected) {
        if (shown == expected)
            return;
        QString line;
        QDebug(&line) << what << "is" << shown << "but should be" << expected;
        wrong.append(line);
    }
    void frame(bool isRunning) {
        same("the mark in the caption", bench_.window->isWindowModified(), project_.unsavedChanges);
        const QString file = QFileInfo(bench_.session.fileName()).fileName();
        same("the caption", bench_.window->windowTitle(),
             "TRL740 Card Preparation" + (file.isEmpty() ? QString() : " - " + file) + "[*]");
        shown("lblNotSaved", bench_.session.differs());
        shown("buttBringBack", bench_.session.canBringBack());
        const bool isPlaying = bench_.player.isPlaying();
        same("what plays", bench_.text("lblPlaying").startsWith("Playing "), isPlaying);
        for (const char* button : {"buttListenSpFile", "buttListenMuFile", "buttListenChime"})
            same(button, bench_.find<QAbstractButton>(button)->text(),
                 QString(isPlaying ? "Stop" : "Listen"));
        same("the waiting cursor", QGuiApplication::overrideCursor() != nullptr, isRunning);
    }
    void shown(const QString& name, bool expected) { same(name, bench_.isShown(name), expected); }

    void speech() {
        const int title = list("lstSpTitles", project_.lstSpTitles, "SpTitle");
        const int language = list("lstLangs", project_.lstLangs, "Lang");
        same("buttAddLang", bench_.isEnabled("buttAddLang"),
             !bench_.field("txtNewLang").isEmpty() && project_.lstLangs.size() < 16);
        file("txtSpeechFile", "buttAddSpFile", "speech", project_.lstSpTitles.value(title),
             project_.lstLangs.value(language), title >= 0 && language >= 0);
        if (bench_.isShown("tblSpOverview"))
            overview({title, language});
    }
    void music() {
        const int row = list("lstMuList", project_.lstMuList, "MuList");
        const QStringList tracks = project_.lstMuList.isEmpty()
                                       ? QStringList()
                                       : project_.lstMuTrack.value(project_.currentMusicList);
        const int track = list("lstMuTrack", tracks, "MuTrack", row >= 0);
        const QString name = project_.lstMuList.value(row);
        if (row >= 0)
            same("the current list", project_.MusicListNames.value(project_.currentMusicList),
                 name);
        file("txtMuFile", "buttAddMuFile", "music", tracks.value(track), name,
             row >= 0 && track >= 0);
    }
    void triggers() {
        const bool isMusic = bench_.isChecked("buttTrigMusic");
        same("buttTrigSpeech", bench_.isChecked("buttTrigSpeech"), !isMusic);
        QStringList items = isMusic ? project_.lstMuList : project_.lstSpTitles;
        if (isMusic && !items.isEmpty())
            items.prepend(ContinuousMixName.toString());
        same("lstTrigLeft", bench_.items("lstTrigLeft"), items);
        const QList<int> left = rowsIn("lstTrigLeft");
        QList<int> right = rowsIn("lstTrigRight");
        right.removeAll(0);  // "<Play Full List>", as a track or title may be called, too
        if (isMusic && left.size() == 1 && left[0] > 0)
            attributes("music", linesAt(bench_.items("lstTrigRight"), right), linesAt(items, left));
        else if (!isMusic && !left.isEmpty())
            attributes("speech", linesAt(items, left), {});
        for (int slot = 0; slot < 3; ++slot) {
            const TrackRecord& trigger = project_.TriggerTable[size_t(slot)];
            const QString row = bench_.text(QString("lblTrig_%1").arg(slot));
            same(row, row.endsWith(": free"), !isAssigned(trigger));
            same(row, bench_.isChecked(QString("buttTrig_%1").arg(slot)), isAssigned(trigger));
        }
    }
    void setup() {
        for (const auto& [name, text] : {std::pair("txtCardTitle1", &Project::txtCardTitle1),
                                         {"txtCardTitle2", &Project::txtCardTitle2},
                                         {"txtChimeFileName", &Project::txtChimeFileName}})
            same(name, bench_.field(name), project_.*text);
        for (const auto& [name, choice] :
             {std::pair("buttDisableChime", &Project::buttDisableChime),
              {"buttPlayIntChime", &Project::buttPlayIntChime},
              {"buttPlayExtChime", &Project::buttPlayExtChime},
              {"buttChimeAlways", &Project::buttChimeAlways},
              {"buttChimeOnce", &Project::buttChimeOnce}})
            same(name, bench_.isChecked(name), project_.*choice);
        QSet<QString> chosen, defaults;
        const auto* view = bench_.find<QAbstractItemView>("lstDefaultLangs");
        same("lstDefaultLangs", bench_.items("lstDefaultLangs"), project_.lstLangs);
        for (const QModelIndex& index : view->selectionModel()->selectedRows())
            chosen.insert(index.data().toString());
        for (const TrackRecord& one : project_.DefaultLanguageTable.mid(1))
            defaults.insert(one.groupName.text());
        same("the default languages", chosen, defaults);
    }

 private:
    QList<int> rowsIn(const QString& list) const {
        QList<int> rows;
        const auto* view = bench_.find<QAbstractItemView>(list);
        for (const QModelIndex& index : view->selectionModel()->selectedRows())
            rows.append(index.row());
        return rows;
    }
    // Compares a list and the buttons that go with what is selected there. Returns the row that is
    // selected alone, -1 for none or several.
    int list(const QString& name, const QStringList& lines, const QString& item, bool has = true) {
        same(name, bench_.items(name), lines);
        const QList<int> rows = rowsIn(name);
        same("buttEdit" + item, bench_.isEnabled("buttEdit" + item), has && rows.size() == 1);
        same("buttDel" + item, bench_.isEnabled("buttDel" + item), has && !rows.isEmpty());
        return rows.size() == 1 ? rows.first() : -1;
    }
    // Compares the attributes of what is selected with the records of one kind that are named so,
    // in any of those groups; without a group, in all. Several that differ have no mark.
    void attributes(const char* kind, const QSet<QString>& items, const QSet<QString>& groups) {
        QSet<bool> loud, cancel, loop;
        for (const TrackRecord& one : project_.TrackTable)
            if (one.kind == kind && items.contains(one.itemName.text()) &&
                (groups.isEmpty() || groups.contains(one.groupName.text()))) {
                loud.insert(one.loudVolume.isTrue());
                cancel.insert(one.cancelOnInterrupt.isTrue());
                loop.insert(one.endlessLoop.isTrue());
            }
        if (loud.isEmpty() || (items.size() == 1 && loud.size() + cancel.size() + loop.size() > 3))
            return;  // no file, or those of one name that differ: the first one's are shown
        const auto marks = [this](const char* off, const char* on) {
            return std::pair(bench_.isChecked(off), bench_.isChecked(on));
        };
        const auto expected = [](const QSet<bool>& values) {
            return std::pair(!values.contains(true), !values.contains(false));
        };
        same("loud", marks("buttPlayNormVolume", "buttPlayLoudVolume"), expected(loud));
        same("cancel", marks("buttResumeOnInt", "buttCancelOnInt"), expected(cancel));
        if (!groups.isEmpty())
            same("loop", bench_.find<QCheckBox>("chkEndlessLoop")->checkState(),
                 loop.size() > 1       ? Qt::PartiallyChecked
                 : loop.contains(true) ? Qt::Checked
                                       : Qt::Unchecked);
    }
    // Compares the table of all titles and languages, and where the operator is in it.
    void overview(const SpeechSelection& selected) {
        const auto* table = bench_.find<QTableView>("tblSpOverview");
        const TrackIndex records(project_);
        QStringList cells, expected;
        for (int title = 0; title < project_.lstSpTitles.size(); ++title)
            for (int language = 0; language < project_.lstLangs.size(); ++language) {
                const TrackRecord* record =
                    records.speech(project_.lstSpTitles[title], project_.lstLangs[language]);
                cells += table->model()->index(title, language).data().toString();
                expected += record ? QFileInfo(record->sourcePath.text()).fileName() : QString();
            }
        same("the overview", cells, expected);
        if (selected.title >= 0 && selected.language >= 0)
            same("its current cell", table->currentIndex(),
                 table->model()->index(selected.title, selected.language));
    }
    const TrackRecord* record(const char* kind, const QString& item, const QString& group) const {
        for (const TrackRecord& one : project_.TrackTable)
            if (one.kind == kind && one.itemName == item && one.groupName == group)
                return &one;
        return nullptr;
    }
    void file(const QString& field, const QString& button, const char* kind, const QString& item,
              const QString& group, bool isPair) {
        const TrackRecord* found = isPair ? record(kind, item, group) : nullptr;
        same(field, bench_.field(field), found ? found->sourcePath.text() : QString());
        same(button, bench_.isEnabled(button), isPair);
    }

    const test::WindowBench& bench_;
    const Project& project_;
};

}  // namespace

QStringList wrongInWindow(const test::WindowBench& bench, bool isRunning) {
    Comparison page(bench);
    page.frame(isRunning);
    switch (bench.find<QTabWidget>("Tabs")->currentIndex()) {
        case 0:
            page.speech();
            break;
        case 1:
            page.music();
            break;
        case 2:
            page.triggers();
            break;
        case 3:
            page.setup();
            break;
        default:
            page.shown("fraProgress", isRunning);
    }
    return page.wrong;
}

QStringList wrongInStatusBar(const test::WindowBench& bench) {
    Comparison page(bench);
    const QString line = bench.text("lblStatus");
    if (line.startsWith("Total"))  // as soon as something was measured
        page.same("the status bar", line,
                  summaryLine(updateSummary(bench.current, bench.files),
                              line.mid(line.lastIndexOf(": ") + 2)));
    return page.wrong;
}

}  // namespace tessaly::monkey
