// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound_window.h"

#include <QCheckBox>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHash>
#include <QItemSelectionModel>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

#include "app/long_work.h"
#include "app/loudness_chart.h"
#include "app/sound_table.h"
#include "app/sound_watch.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Title = u"Check Sound"_s;

// Music list by list, then the announcements language by language, each as its page has them.
QList<ItemSound> inOrderOfLists(const Project& project, const QList<ItemSound>& sounds) {
    const auto rowsOf = [](const QStringList& lines) {
        QHash<QString, int> rows;
        for (qsizetype row = lines.size(); row-- > 0;)
            rows.insert(lines[row], int(row));
        return rows;
    };
    const QHash<QString, int> lists = rowsOf(project.lstMuList),
                              titles = rowsOf(project.lstSpTitles),
                              languages = rowsOf(project.lstLangs);
    const MusicListIndex index(project);
    QHash<QString, QHash<QString, int>> tracks;
    for (const QString& list : project.lstMuList)
        tracks.insert(list, rowsOf(index.tracks(list)));
    using Key = std::tuple<int, int, int, qsizetype>;
    QList<Key> keys;
    for (const ItemSound& sound : sounds) {
        const QString item = sound.item(), group = sound.group();
        const int kind = sound.isTrack() ? 0 : sound.isAnnouncement() ? 1 : 2;
        keys.append({kind, kind == 0 ? lists.value(group) : languages.value(group),
                     kind == 0 ? tracks[group].value(item) : titles.value(item), keys.size()});
    }
    std::sort(keys.begin(), keys.end());
    QList<ItemSound> ordered;
    ordered.reserve(sounds.size());
    for (const Key& key : keys)
        ordered.append(sounds[std::get<qsizetype>(key)]);
    return ordered;
}

ChartFile chartFile(const ItemSound& item) {
    ChartFile file{.group = item.isAnnouncement() ? u"Announcements"_s
                            : item.isTrack()      ? item.group()
                                                  : item.item(),
                   .limit = item.isTrack() ? MostMusicDifference : MostSpeechDifference,
                   .difference = {}};
    if (item.isMissing || !item.sound) {
        file.isUnheard = item.isMissing;
        return file;
    }
    file.isUnheard = !item.sound->quick.hasSound();
    if (const auto& whole = item.sound->whole) {
        file.isUnheard |= whole->loudness <= WholeLook::Silent;
        file.isClipped = whole->truePeak > 0;
        file.isOutside = item.isTooLoudOrQuiet();
        if (!file.isUnheard)
            file.difference = item.difference;
    }
    return file;
}

}  // namespace

std::optional<Place> placeOf(const Project& project, const ItemSound& item) {
    if (item.record)
        return placeOf(project, *item.record);
    return Place{.kind = Place::Kind::Chime, .text = QFileInfo(item.path).fileName()};
}

std::optional<Place> showSoundCheck(const Project& project, const Services& services,
                                    QWidget* parent) {
    const Project asItIs = project;
    const SourceFiles sources = measureSources(asItIs, services.files);
    if (sources.tracks.isEmpty()) {
        services.prompts.tell({.text = u"There are no Speech or Music files selected."_s});
        return {};
    }
    SoundBook& book = services.sounds.book();
    QList<ItemSound> sounds;
    {
        ProgressBox progress(parent, Title);
        decodeAll(sources, book, [&](double done) {
            return progress.show(decodingInWords(done, progress.elapsed()), done);
        });
        const auto compare = [&] {
            book.save();  // it may have taken an hour
            sounds = inOrderOfLists(asItIs, soundsOf(asItIs, sources, book));
        };
        progress.endCancelling();
        runOnThread(compare, [&] { progress.show(u"Comparing..."_s); });
    }
    SoundWindow window(asItIs, sounds, parent);
    return window.exec() == QDialog::Accepted ? window.place() : std::nullopt;
}

SoundWindow::SoundWindow(const Project& project, const QList<ItemSound>& sounds, QWidget* parent)
    : QDialog(parent),
      project_(project),
      sounds_(sounds),
      model_(new SoundModel(sounds_, fontMetrics(), this)),
      table_(new SoundTable(model_, this)),
      chart_(new LoudnessChart(this)),
      words_(new QLabel(this)),
      onlyFindings_(new QCheckBox(u"&Only what needs a look"_s, this)),
      goThere_(new QPushButton(u"&Go There"_s, this)) {
    setWindowTitle(Title);
    setSizeGripEnabled(true);
    auto* summary = new QLabel(inWords(sounds_) + u'.', this);
    auto* copyRows = new QPushButton(u"&Copy"_s, this);
    auto* close = new QPushButton(u"Close"_s, this);
    summary->setWordWrap(true);
    summary->setObjectName(u"lblSoundSummary"_s);
    chart_->setObjectName(u"chartSound"_s);
    chart_->setAccessibleDescription(summary->text());
    table_->setObjectName(u"tblSound"_s);
    table_->setAccessibleName(u"Sound of the files"_s);
    words_->setObjectName(u"lblSound"_s);
    onlyFindings_->setObjectName(u"chkOnlyFindings"_s);
    goThere_->setObjectName(u"buttGoToSound"_s);
    goThere_->setToolTip(u"Show this item on its page (Enter)"_s);
    goThere_->setDefault(true);
    copyRows->setObjectName(u"buttCopySound"_s);
    copyRows->setToolTip(u"Copy the selected rows as text (Ctrl+C)"_s);
    close->setObjectName(u"buttCloseSound"_s);
    words_->setTextFormat(Qt::PlainText);
    words_->setWordWrap(true);
    // Always room for two lines, so that nothing moves when another row is selected.
    words_->setMinimumHeight(2 * fontMetrics().lineSpacing());
    words_->setAlignment(Qt::AlignTop | Qt::AlignLeft);

    auto* layout = new QVBoxLayout(this);
    auto* above = new QHBoxLayout;
    auto* below = new QHBoxLayout;
    above->addWidget(summary, 1);
    above->addWidget(onlyFindings_);
    layout->addLayout(above);
    layout->addWidget(chart_, 2);
    layout->addWidget(table_, 3);
    layout->addWidget(words_);
    layout->addLayout(below);
    below->addWidget(copyRows);
    below->addStretch(1);
    below->addWidget(goThere_);
    below->addWidget(close);

    connect(onlyFindings_, &QCheckBox::toggled, this, &SoundWindow::filter);
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &SoundWindow::showCurrent);
    connect(table_, &QTableView::doubleClicked, goThere_, &QPushButton::click);
    connect(chart_, &LoudnessChart::chosen, this, &SoundWindow::goToSound);
    connect(goThere_, &QPushButton::clicked, this, &QDialog::accept);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);
    connect(copyRows, &QPushButton::clicked, this, &SoundWindow::copy);
    auto* copyKey = new QShortcut(QKeySequence::Copy, this);
    connect(copyKey, &QShortcut::activated, this, &SoundWindow::copy);
    showFiles();
    goToSound(model_->soundAt(0));
    table_->setFocus();
    resize(QSize(158 * fontMetrics().averageCharWidth(), 40 * fontMetrics().height())
               .boundedTo(screen()->availableSize() * 9 / 10));
}

std::optional<Place> SoundWindow::place() const {
    const int sound = currentSound();
    return sound < 0 ? std::nullopt : placeOf(project_, sounds_[sound]);
}

void SoundWindow::showFiles() {
    QList<ChartFile> files;
    for (const ItemSound& item : sounds_)
        files.append(chartFile(item));
    chart_->show(files, [this](int sound) { return describe(sound); });
}

int SoundWindow::currentSound() const {
    return model_->soundAt(table_->currentIndex().row());
}

void SoundWindow::showCurrent() {
    const int sound = currentSound();
    chart_->select(sound);
    words_->setText(sound < 0 ? QString() : describe(sound));
    goThere_->setEnabled(place().has_value());
}

void SoundWindow::filter() {
    const int before = currentSound();
    model_->setOnlyFindings(onlyFindings_->isChecked());
    const int row = before < 0 ? -1 : model_->rowOf(before);
    goToSound(row < 0 ? model_->soundAt(0) : before);
    showCurrent();
}

void SoundWindow::goToSound(int sound) {
    if (sound < 0)
        return;
    if (model_->rowOf(sound) < 0)
        onlyFindings_->setChecked(false);
    const QModelIndex index = model_->index(model_->rowOf(sound), 0);
    table_->setCurrentIndex(index);
    table_->scrollTo(index);
}

void SoundWindow::copy() const {
    QGuiApplication::clipboard()->setText(model_->asText(table_->selectedRows()));
}

// "Rope Walk (French): -23.4 LUFS, -7.2 LU, -1.0 dBTP", and what is wrong on a line below.
QString SoundWindow::describe(int sound) const {
    const auto text = [&](int column) { return model_->text(sound, column); };
    QString words = text(SoundModel::ItemColumn);
    if (const QString group = text(SoundModel::GroupColumn); !group.isEmpty())
        words += u" (%1)"_s.arg(group);
    if (const auto& known = sounds_[sound].sound;
        known && known->whole && known->whole->loudness > WholeLook::Silent)
        words += u": %1 LUFS, %2 LU, %3 dBTP"_s.arg(text(SoundModel::LoudnessColumn),
                                                    text(SoundModel::DifferenceColumn),
                                                    text(SoundModel::PeakColumn));
    const QString finding = text(SoundModel::WordsColumn);
    return finding.isEmpty() ? words : words + u'\n' + finding;
}

}  // namespace tessaly
