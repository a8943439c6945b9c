// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/speech_languages.h"

#include <QDir>
#include <QHash>
#include <QSet>
#include <algorithm>

#include "editor/folder_tree.h"
#include "editor/imported_list.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// The MP3 files that one folder brings, which may all be of the language that it is called by.
struct SpeechFolder {
    QString name;
    QStringList files;
};

bool isLanguageName(const LanguageNames& languages, const QString& folder) {
    return languages.called(folder) || languages.called(withoutNumber(folder)) ||
           languageCalled(withoutNumber(folder), 2) != QLocale::AnyLanguage;
}

// What a folder brings: itself as one of a language with all below it, or its folders as one each.
QList<SpeechFolder> languageFolders(const LanguageNames& languages, const FileSystem& files,
                                    const QString& path, AddSummary& summary,
                                    const KeepGoing& keepGoing) {
    const QList<Mp3Folder> found = mp3FoldersIn(files, path, summary, keepGoing);
    SpeechFolder whole{lastNameOf(path), {}}, loose{lastNameOf(path), {}};
    QList<SpeechFolder> inside;
    const qsizetype behind = withLastSeparator(path).size();
    bool hasLanguages = false;
    for (const Mp3Folder& folder : found) {
        whole.files += folder.files;
        if (folder.path == path) {
            loose.files = folder.files;
            continue;
        }
        const QString name = folder.path.mid(behind).section(QDir::separator(), 0, 0);
        if (inside.isEmpty() || inside.last().name != name)
            inside.append({name, {}});
        inside.last().files += folder.files;
        hasLanguages = hasLanguages || isLanguageName(languages, name);
    }
    if (isLanguageName(languages, whole.name) || (!loose.files.isEmpty() && !hasLanguages))
        inside = {whole};
    else if (!loose.files.isEmpty())
        inside.append(loose);
    return inside;
}

// Everything that was given, folder by folder.
QList<SpeechFolder> foldersOf(const LanguageNames& languages, const FileSystem& files,
                              QStringList paths, AddSummary& summary, const KeepGoing& keepGoing) {
    for (QString& path : paths)
        path = QDir::toNativeSeparators(QDir::cleanPath(path));
    sortByName(paths);
    QList<SpeechFolder> folders;
    QHash<QString, qsizetype> looseFolders;  // by path
    qsizetype count = 0;
    for (const QString& path : paths) {
        if (files.isFolder(path)) {
            const auto found = languageFolders(languages, files, path, summary, keepGoing);
            if (found.isEmpty())
                summary.note(wholePath(path) + u" holds no MP3 file."_s);
            for (const SpeechFolder& folder : found)
                count += folder.files.size();
            folders += found;
        } else if (!files.fileSize(path)) {
            summary.leaveOut(LeftOut::NotFound, path);
        } else if (!isMp3Name(lastNameOf(path))) {
            summary.leaveOut(LeftOut::NoMp3, path);
        } else {
            const QString folder = path.chopped(lastNameOf(path).size() + 1);
            if (!looseFolders.contains(folder)) {
                looseFolders.insert(folder, folders.size());
                folders.append({lastNameOf(folder), {}});
            }
            folders[looseFolders[folder]].files.append(path);
            ++count;
        }
        if (count > MostImportedTracks)
            throw tooManyAtOnce(path);
    }
    return folders;
}

// Finds the language of each file.
class LanguageFinder {
 public:
    explicit LanguageFinder(const Project& project)
        : languages(project.lstLangs), taken_(project.lstLangs) {}

    QList<SpeechPlanLine> linesOf(const QList<SpeechFolder>& folders, AddSummary& summary,
                                  const KeepGoing& keepGoing);

    LanguageNames languages;  // the project's and new ones

 private:
    QString languageOf(const SpeechFolder& folder);
    bool endsTellLanguages(const QStringList& files) const;
    QString addLanguage(const QString& whole);

    UniqueNames taken_;
    QHash<QString, QString> wholeNames_;  // of new languages
    QHash<QString, int> cutNames_;        // how many folders share what remains of their name
};

QString LanguageFinder::addLanguage(const QString& whole) {
    const QString cut = firstCharacters(whole, limits::LanguageName);
    const QString name = taken_.add(cut.isEmpty() ? u"Language"_s : cut);
    languages.add(name);
    wholeNames_.insert(name, cut.isEmpty() ? name : whole);
    return name;
}

// The language that a folder is called by; empty when that is not told by its name.
QString LanguageFinder::languageOf(const SpeechFolder& folder) {
    const QString plain = withoutNumber(folder.name);
    const QString cut = firstCharacters(folder.name, limits::LanguageName);
    for (const QString& name : {folder.name, plain})
        if (const auto language = languages.called(name))
            return *language;
    // A project holds the first letters of a long name. Two folders that share them are two.
    if (cut != folder.name && cutNames_.value(nameKey(cut)) == 1)
        if (const auto language = languages.called(cut))
            return *language;
    for (const QString& name : {folder.name, plain})
        if (languageCalled(name, 2) != QLocale::AnyLanguage)
            return addLanguage(name);
    if (const auto ending = languages.endingOf(folder.name))
        return ending->language;
    return {};
}

// One name that ends like a language may do so by chance: "How_it_is".
bool LanguageFinder::endsTellLanguages(const QStringList& files) const {
    QSet<QString> found;
    for (const QString& file : files) {
        const auto ending = languageEnding(nameOfMp3(lastNameOf(file)));
        if (!ending)
            return false;
        found.insert(ending->language);
    }
    return found.size() > 1;
}

QList<SpeechPlanLine> LanguageFinder::linesOf(const QList<SpeechFolder>& folders,
                                              AddSummary& summary, const KeepGoing& keepGoing) {
    QSet<QString> names;
    for (const SpeechFolder& folder : folders)
        names.insert(folder.name);
    for (const QString& name : names)
        ++cutNames_[nameKey(firstCharacters(name, limits::LanguageName))];
    QHash<QString, QString> byFolder;   // one name is one language, wherever the folder stands
    QHash<QString, QString> byDefault;  // of files that nothing tells
    QList<SpeechPlanLine> lines;
    for (const SpeechFolder& folder : folders) {
        if (!byFolder.contains(folder.name))
            byFolder.insert(folder.name, languageOf(folder));
        const QString ofFolder = byFolder[folder.name];
        const bool endsTell = ofFolder.isEmpty() && endsTellLanguages(folder.files);
        for (const QString& file : folder.files) {
            if (!goesOn(keepGoing, lines.size(), 0)) {
                summary.isCancelled = true;
                return lines;
            }
            const QString name = nameOfMp3(lastNameOf(file));
            QString language = ofFolder;
            if (language.isEmpty())
                if (const auto ending = languages.endingOf(name))
                    language = ending->language;
            if (language.isEmpty() && endsTell)
                language = addLanguage(languageEnding(name)->language);
            if (language.isEmpty()) {
                QString& found = byDefault[folder.name];
                language = found = found.isEmpty() ? addLanguage(folder.name) : found;
            }
            lines.append({.path = file,
                          .language = language,
                          .title = {},
                          .wholeLanguage = wholeNames_.value(language)});
        }
    }
    return lines;
}

}  // namespace

QList<SpeechPlanLine> linesByLanguage(const Project& project, const FileSystem& files,
                                      const QStringList& paths,
                                      const std::optional<QString>& language,
                                      LanguageNames& languages, AddSummary& summary,
                                      const KeepGoing& keepGoing) {
    const QList<SpeechFolder> folders =
        foldersOf(LanguageNames(project.lstLangs), files, paths, summary, keepGoing);
    LanguageFinder finder(project);
    QList<SpeechPlanLine> lines;
    if (!language)
        lines = finder.linesOf(folders, summary, keepGoing);
    else
        for (const SpeechFolder& folder : folders)
            for (const QString& file : folder.files)
                lines.append({.path = file, .language = *language, .title = {}});
    languages = finder.languages;
    return lines;
}

}  // namespace tessaly
