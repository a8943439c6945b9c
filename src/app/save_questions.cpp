#include "app/save_questions.h"

#include <QDir>

#include "model/card_file.h"
#include "model/text_codec.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

constexpr int NamesShown = 12;

QString shortList(QStringList names) {
    if (names.size() > NamesShown) {
        const qsizetype more = names.size() - NamesShown;
        names.resize(NamesShown);
        names.append(QString("... and %1 more").arg(more));
    }
    for (QString& name : names)
        name = elided(name);
    return names.join('\n');
}

QString lostFilesText(const QStringList& paths) {
    return "A card file cannot hold some characters of these paths. When it is opened again, the "
           "MP3 files are not found:\r\r" +
           shortList(paths) + "\r\rRename the files or their folders, then choose them again.";
}

}  // namespace

bool confirmSave(ProjectSession& session, Prompts& prompts) {
    const auto confirmed = [&](const QString& text) {
        return prompts.ask(
            {.text = text + "\r\rSave all the same?", .icon = Message::Icon::Exclamation}, true);
    };
    const QStringList paths = pathsOutsideCodePage(session.project);
    if (!paths.isEmpty() && !confirmed(lostFilesText(paths)))
        return false;
    const QStringList texts = textsOutsideCodePage(session.project);
    if (!texts.isEmpty() && !confirmed("A card file cannot hold some characters of these texts; "
                                       "they are saved as \"?\":\r\r" +
                                       shortList(texts)))
        return false;
    const QStringList unsavable = session.newlyUnsavable();
    if (!unsavable.isEmpty())
        prompts.tell({.text = "A card file holds no tracks without an MP3 file and no lists "
                              "without a track. These are not saved:\r\r" +
                              shortList(unsavable)});
    return true;
}

void tellUnsavablePaths(Prompts& prompts, QStringList paths) {
    paths.removeIf(fitsCodePage);
    for (QString& path : paths)
        path = QDir::toNativeSeparators(path);
    if (!paths.isEmpty())
        prompts.tell({.text = lostFilesText(paths), .icon = Message::Icon::Exclamation});
}

}  // namespace tessaly
