#include "window_checks.h"

#include <QRadioButton>

#include "app/list_section.h"
#include "card/card_files.h"
#include "editor/file_display.h"
#include "model/music_lists.h"
#include "setup/setup_items.h"
#include "triggers/item_settings.h"

namespace tessaly::monkey {

namespace {

// Collects what differs.
class Comparison {
 public:
    explicit Comparison(const test::WindowBench& bench) : bench_(bench) {}

    template <typename Value>
    void same(const char* what, const Value& shown, const Value& expected) {
        if (shown == expected)
            return;
        QString line;
        QDebug(&line) << what << "is" << shown << "but should be" << expected;
        wrong.append(line);
    }
    void items(const char* list, const QStringList& expected) {
        same(list, bench_.items(list), expected);
    }
    void enabled(const char* widget, bool expected) {
        same(widget, bench_.isEnabled(widget), expected);
    }
    void checked(const char* widget, bool expected) {
        same(widget, bench_.isChecked(widget), expected);
    }
    void field(const char* widget, const QString& expected) {
        same(widget, bench_.field(widget), expected);
    }
    int row(const char* list) const { return bench_.find<LineList>(list)->row(); }

    QStringList wrong;

 private:
    const test::WindowBench& bench_;
};

void compareSpeech(const test::WindowBench& bench, Comparison& page) {
    const Project& project = bench.current;
    page.items("lstSpTitles", project.lstSpTitles);
    page.items("lstLangs", project.lstLangs);
    const SpeechSelection selected{.title = page.row("lstSpTitles"),
                                   .language = page.row("lstLangs")};
    const bool isPair = selected.title >= 0 && selected.language >= 0;
    page.enabled("buttAddSpTitle", !bench.field("txtNewSpTitle").isEmpty());
    page.enabled("buttEditSpTitle", selected.title >= 0);
    page.enabled("buttDelSpTitle", selected.title >= 0);
    page.enabled("buttAddLang",
                 !bench.field("txtNewLang").isEmpty() && project.lstLangs.size() < 16);
    page.enabled("buttEditLang", selected.language >= 0);
    page.enabled("buttDelLang", selected.language >= 0);
    page.enabled("buttAddSpFile", isPair);
    page.field("txtSpeechFile", speechDisplay(project, selected, bench.files).path);
}

void compareMusic(const test::WindowBench& bench, Comparison& page) {
    const Project& project = bench.current;
    const MusicSelection selected{.list = page.row("lstMuList"), .track = page.row("lstMuTrack")};
    page.items("lstMuList", project.lstMuList);
    page.items("lstMuTrack", project.lstMuList.isEmpty()
                                 ? QStringList()
                                 : project.lstMuTrack.value(project.currentMusicList));
    if (const auto list = lineAt(project.lstMuList, selected.list))
        page.same("the current list", project.MusicListNames.value(project.currentMusicList),
                  *list);
    const bool isPair = selected.list >= 0 && selected.track >= 0;
    page.enabled("buttAddMuList", !bench.field("txtNewMuList").isEmpty());
    page.enabled("buttEditMuList", selected.list >= 0);
    page.enabled("buttDelMuList", selected.list >= 0);
    for (const char* button : {"buttEditMuTrack", "buttDelMuTrack", "buttAddMuFile"})
        page.enabled(button, isPair);
    const QString path = lineAt(project.lstMuList, selected.list)
                             ? musicDisplay(project, selected, bench.files, bench.tags).path
                             : QString();
    page.field("txtMuFile", path);
}

// The selector as the page shows it.
TriggerSelector selectorOnView(const test::WindowBench& bench, const Comparison& page) {
    TriggerSelector selector;
    selector.mode = bench.isChecked("buttTrigMusic") ? TriggerMode::Music : TriggerMode::Speech;
    selector.lstTrigLeft = bench.items("lstTrigLeft");
    selector.leftRow = page.row("lstTrigLeft");
    selector.lstTrigRight = bench.items("lstTrigRight");
    selector.rightRow = page.row("lstTrigRight");
    return selector;
}

void compareTriggers(const test::WindowBench& bench, Comparison& page) {
    const Project& project = bench.current;
    const TriggerSelector shown = selectorOnView(bench, page);
    Project scratch = project;
    TriggerSelector fresh = selectTriggerMode(project, shown.mode);
    page.same("buttTrigSpeech", bench.isChecked("buttTrigSpeech"),
              shown.mode == TriggerMode::Speech);
    page.items("lstTrigLeft", fresh.lstTrigLeft);
    if (!shown.lstTrigRight.isEmpty()) {
        selectTriggerLeft(scratch, fresh, shown.leftRow);
        page.items("lstTrigRight", fresh.lstTrigRight);
    }
    const TriggerSelection selection = selectionOf(shown);
    const AttributeControls enabled = enabledControls(selection);
    page.enabled("buttPlayNormVolume", enabled.attributes);
    page.enabled("buttCancelOnInt", enabled.attributes);
    page.enabled("chkEndlessLoop", enabled.endlessLoop);
    page.enabled("chkPowerUp", enabled.play);
    const AttributeDisplay display = displayedAttributes(project, selection);
    page.checked("buttPlayNormVolume", !display.loud);
    page.checked("buttPlayLoudVolume", display.loud);
    page.checked("buttResumeOnInt", !display.cancel);
    page.checked("buttCancelOnInt", display.cancel);
    page.checked("chkEndlessLoop", display.loop);
    page.checked("chkPowerUp", display.powerUp);
    const PowerUpItem powerUp = powerUpItem(project);
    page.same("lblPowerUpItem", bench.text("lblPowerUpItem"), powerUp.words);
    page.same("buttClearPowerUp", bench.isShown("buttClearPowerUp"), powerUp.isGone);
    const auto rows = triggerRows(project, selection);
    for (int slot = 0; slot < TriggerRows; ++slot) {
        const TriggerRow& row = rows[size_t(slot)];
        const QString number = QString::number(slot);
        page.same("lblTrig", bench.text("lblTrig_" + number), row.words);
        page.same("buttTrig", bench.isChecked("buttTrig_" + number), row.isAssigned);
        page.same("buttTrig enabled", bench.isEnabled("buttTrig_" + number), row.isEnabled);
        page.same("buttViewTrig", bench.isEnabled("buttViewTrig_" + number),
                  row.isAssigned && !row.isEnabled);
    }
}

void compareSetup(const test::WindowBench& bench, Comparison& page) {
    const Project& project = bench.current;
    page.field("txtCardTitle1", project.txtCardTitle1);
    page.field("txtCardTitle2", project.txtCardTitle2);
    page.field("txtChimeFileName", project.txtChimeFileName);
    page.checked("buttDisableChime", project.buttDisableChime);
    page.checked("buttPlayIntChime", project.buttPlayIntChime);
    page.checked("buttPlayExtChime", project.buttPlayExtChime);
    page.checked("buttChimeAlways", project.buttChimeAlways);
    page.checked("buttChimeOnce", project.buttChimeOnce);
    const ChimeControls enabled = chimeControls(project);
    page.enabled("txtChimeFileName", enabled.file);
    page.enabled("buttGetChimeFile", enabled.file);
    page.enabled("buttChimeAlways", enabled.repetition);
    page.enabled("buttChimeOnce", enabled.repetition);
    page.items("lstDefaultLangs", project.lstLangs);
    QStringList chosen;
    const auto* list = bench.find<QListWidget>("lstDefaultLangs");
    for (int row = 0; row < list->count(); ++row)
        if (list->item(row)->isSelected())
            chosen.append(list->item(row)->text());
    QStringList defaults;
    for (const TrackRecord& record : project.DefaultLanguageTable.mid(1))
        if (project.lstLangs.contains(record.groupName.text()))
            defaults.append(record.groupName.text());
    chosen.sort();
    defaults.sort();
    page.same("the default languages", chosen, defaults);
}

void compareCreateCard(const test::WindowBench& bench, Comparison& page, bool isRunning) {
    page.same("fraProgress", bench.isShown("fraProgress"), isRunning);
}

}  // namespace

QStringList wrongInWindow(const test::WindowBench& bench, bool isRunning) {
    Comparison page(bench);
    page.same("the mark in the caption", bench.window->isWindowModified(),
              bench.current.unsavedChanges);
    const QString file = QFileInfo(bench.session.fileName()).fileName();
    page.same("the caption", bench.window->windowTitle(),
              "TRL740 Card Preparation" + (file.isEmpty() ? QString() : " - " + file) + "[*]");
    page.same("lblNotSaved", bench.isShown("lblNotSaved"), bench.session.differs());
    page.same("buttBringBack", bench.isShown("buttBringBack"), bench.session.canBringBack());
    switch (bench.find<QTabWidget>("Tabs")->currentIndex()) {
        case 0:
            compareSpeech(bench, page);
            break;
        case 1:
            compareMusic(bench, page);
            break;
        case 2:
            compareTriggers(bench, page);
            break;
        case 3:
            compareSetup(bench, page);
            break;
        case 4:
            compareCreateCard(bench, page, isRunning);
            break;
    }
    page.same("the waiting cursor", QGuiApplication::overrideCursor() != nullptr, isRunning);
    return page.wrong;
}

QStringList wrongInStatusBar(const test::WindowBench& bench) {
    Comparison page(bench);
    const QString line = bench.status();
    if (line.startsWith("Total"))  // as soon as something was measured
        page.same("the status bar", line,
                  summaryLine(updateSummary(bench.current, bench.files),
                              line.mid(line.lastIndexOf(": ") + 2)));
    return page.wrong;
}

}  // namespace tessaly::monkey
