// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/session_status.h"

#include <QDir>
#include <QFileInfo>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>
#include <QStatusBar>

#include "model/card_file.h"
#include "model/text_codec.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int ProblemShownMs = 30 * 1000;
constexpr int NameCharacters = 20;  // more would take the summary's room
constexpr int NamesShown = 12;

// The file's name alone, as long as the bar has room for.
QString briefName(const QString& file, const QWidget* widget) {
    const QFontMetrics metrics = widget->fontMetrics();
    return metrics.elidedText(QFileInfo(file).fileName(), Qt::ElideMiddle,
                              metrics.averageCharWidth() * NameCharacters);
}

QString lostFilesText(const QStringList& paths) {
    return u"A card file cannot hold some characters of these paths. When it is opened again, the "_s
           u"MP3 files are not found:\r\r"_s +
           shortList(paths) + u"\r\rRename the files or their folders, then choose them again."_s;
}

bool confirmed(Prompts& prompts, const QString& text) {
    return prompts.ask(
        {.text = text + u"\r\rSave all the same?"_s, .icon = Message::Icon::Exclamation}, true);
}

}  // namespace

SessionStatus::SessionStatus(const ProjectSession& session, QStatusBar* bar)
    : QObject(bar),
      session_(session),
      bar_(bar),
      lblRemoved_(new QLabel),
      lblNotSaved_(new QLabel),
      lblStandIn_(new QLabel(u"stand-in firmware"_s)),
      buttBringBack_(new QPushButton) {
    lblNotSaved_->setObjectName(u"lblNotSaved"_s);
    lblNotSaved_->setTextFormat(Qt::PlainText);
    buttBringBack_->setObjectName(u"buttBringBack"_s);
    buttBringBack_->setAutoDefault(true);  // Enter presses it, too
    lblStandIn_->setObjectName(u"lblStandIn"_s);
    lblStandIn_->setToolTip(
        u"The firmware folder holds a stand-in: a card written with it updates "_s
        u"no player. About names the folder for the maker's file."_s);
    lblRemoved_->setObjectName(u"lblRemoved"_s);
    lblRemoved_->setTextFormat(Qt::RichText);
    connect(lblRemoved_, &QLabel::linkActivated, this, &SessionStatus::undoChosen);
    for (QWidget* widget :
         std::initializer_list<QWidget*>{lblStandIn_, lblRemoved_, buttBringBack_, lblNotSaved_}) {
        bar->addPermanentWidget(widget);
        widget->hide();
    }
    connect(buttBringBack_, &QPushButton::clicked, this, &SessionStatus::bringBackChosen);
}

void SessionStatus::show() {
    const QString& file = session_.fileName();
    lblNotSaved_->setText(file.isEmpty() ? u"not saved"_s
                                         : u"not saved in "_s + briefName(file, lblNotSaved_));
    lblNotSaved_->setToolTip(QDir::toNativeSeparators(file));
    lblNotSaved_->setVisible(session_.differs());

    const QString closed = session_.closedFile();
    QString name = closed.isEmpty() ? u"the project"_s : briefName(closed, buttBringBack_);
    buttBringBack_->setText(u"Bring back "_s + name.replace(u'&', u"&&"_s));
    buttBringBack_->setToolTip(
        (u"Open... has closed it "_s + QDir::toNativeSeparators(closed)).trimmed());
    buttBringBack_->setVisible(session_.canBringBack());
}

void SessionStatus::sayCopyFailed(const QString& problem) {
    const QString text = u"The unsaved project could not be kept for recovery: "_s;
    // The reason stands behind a long path: it must not be what is cut.
    const QFontMetrics metrics = bar_->fontMetrics();
    const int room = bar_->width() - metrics.horizontalAdvance(text) -
                     lblNotSaved_->sizeHint().width() - metrics.averageCharWidth() * 6;
    bar_->showMessage(text + metrics.elidedText(problem, Qt::ElideMiddle, room), ProblemShownMs);
}

void SessionStatus::sayRemoved(const QString& words) {
    lblRemoved_->setText(words.toHtmlEscaped() + u" <a href=\"undo\">Undo</a>"_s);
    lblRemoved_->setVisible(!words.isEmpty());
}

bool confirmSave(ProjectSession& session, Prompts& prompts) {
    const QStringList paths = pathsOutsideCodePage(session.project);
    return (paths.isEmpty() || confirmed(prompts, lostFilesText(paths))) &&
           confirmTexts(session, prompts);
}

bool confirmTexts(ProjectSession& session, Prompts& prompts) {
    const QStringList texts = textsOutsideCodePage(session.project);
    if (!texts.isEmpty() &&
        !confirmed(prompts,
                   u"A card file cannot hold some characters of these texts; they are "_s
                   u"saved as \"?\":\r\r"_s +
                       shortList(texts)))
        return false;
    const QStringList unsavable = session.newlyUnsavable();
    if (!unsavable.isEmpty())
        prompts.tell({.text = u"A card file holds no tracks without an MP3 file and no lists "_s
                              u"without a track. These are not saved:\r\r"_s +
                              shortList(unsavable)});
    return true;
}

QString shortList(QStringList names) {
    if (names.size() > NamesShown) {
        const qsizetype more = names.size() - NamesShown;
        names.resize(NamesShown);
        names.append(u"... and %1 more"_s.arg(more));
    }
    for (QString& name : names)
        name = elided(name);
    return names.join(u'\n');
}

void tellUnsavablePaths(Prompts& prompts, QStringList paths) {
    paths.removeIf(fitsCodePage);
    for (QString& path : paths)
        path = QDir::toNativeSeparators(path);
    if (!paths.isEmpty())
        prompts.tell({.text = lostFilesText(paths), .icon = Message::Icon::Exclamation});
}

void tellSummary(Prompts& prompts, const AddSummary& summary) {
    prompts.tell(
        {.text = summary.text() + u'.',
         .icon = summary.added > 0 ? Message::Icon::Information : Message::Icon::Exclamation,
         .details = summary.details()});
}

}  // namespace tessaly
