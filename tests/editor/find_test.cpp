// SPDX-License-Identifier: GPL-3.0-or-later
// What is found, against a search that knows nothing of tables and looks at one letter after the
// other.
#include "editor/find.h"

#include <gtest/gtest.h>

#include "support/projects.h"

namespace tessaly {

using namespace test;

namespace {

using Kind = Place::Kind;

// Lower case without accents, letter by letter.
QString plain(const QString& text) {
    QString result;
    for (const QChar c : text)
        if (const QString parts = c.decomposition(); !parts.isEmpty())
            result += plain(parts);
        else if (!c.isMark())
            result += c.toLower();
    return result;
}

bool holds(const QString& text, const QString& words) {
    for (qsizetype at = 0; at + words.size() <= text.size(); ++at)
        if (text.mid(at, words.size()) == words)
            return true;
    return false;
}

// The file of the first record of those names.
QString fileOf(const Project& project, const char* kind, const QString& item,
               const QString& group) {
    for (const TrackRecord& record : project.TrackTable)
        if (record.kind.is(QString(kind)) && record.itemName.is(item) && record.groupName.is(group))
            return record.sourcePath.text().section('/', -1).section('\\', -1);
    return {};
}

QList<Place> searched(const Project& project, const QString& words) {
    QList<Place> all, found;
    const QStringList lists = project.lstMuList, titles = project.lstSpTitles,
                      languages = project.lstLangs;
    const auto tracks = [&](int list) { return tracksOfMusicList(project, lists[list]); };
    for (int i = 0; i < lists.size(); ++i)
        all.append({Kind::MusicList, lists[i], i, -1});
    for (int i = 0; i < lists.size(); ++i)
        for (int j = 0; j < tracks(i).size(); ++j)
            all.append({Kind::Track, tracks(i)[j], i, j});
    for (int i = 0; i < titles.size(); ++i)
        all.append({Kind::Title, titles[i], i, -1});
    for (int j = 0; j < languages.size(); ++j)
        all.append({Kind::Language, languages[j], -1, j});
    for (int i = 0; i < lists.size(); ++i)
        for (int j = 0; j < tracks(i).size(); ++j)
            all.append({Kind::MusicFile, fileOf(project, "music", tracks(i)[j], lists[i]), i, j});
    for (int i = 0; i < titles.size(); ++i)
        for (int j = 0; j < languages.size(); ++j)
            all.append(
                {Kind::SpeechFile, fileOf(project, "speech", titles[i], languages[j]), i, j});
    all.append({Kind::Chime, project.txtChimeFileName.section('/', -1), -1, -1});
    for (const Place& place : all)
        if (holds(plain(place.text), plain(words)))
            found.append(place);
    return found;
}

}  // namespace

TEST(Find, FindsWhatANaiveSearchFinds) {
    std::mt19937 random(7);
    const QString letters = "aÄäeÉoû z1.";
    qsizetype found = 0;
    Finder finder;
    for (int round = 0; round < 300; ++round) {
        Project project = randomProject(random, 30, round % 2 ? Names::Any : Names::Plain);
        project.txtChimeFileName = "/chimes/Žába ding.mp3";
        QString words;
        for (int left = 1 + int(random() % 3); left > 0; --left)
            words += letters[int(random() % size_t(letters.size()))];
        if (words.trimmed() != words)
            words = "ding";
        const QList<Place> places = finder.find(project, words);
        ASSERT_TRUE(places == searched(project, words)) << words.toStdString();
        found += places.size();
    }
    EXPECT_GT(found, 1000);
}

TEST(Find, LettersOfManyFormsAndWordsForPlaces) {
    Project project;
    addTrack(project, "Harbour Morning", "Ca\u0301fe \uFB01ne", "C:\\Music\\Bells.mp3");
    addSpeech(project, "Straße", "Español", "/speech/welcome.mp3");
    project.txtChimeFileName = "/chimes/ding.mp3";
    const auto words = [&](const QString& what) {
        QStringList lines;
        for (const Place& place : Finder().find(project, what))
            lines.append(place.text + ": " + placeInWords(project, place));
        return lines.join(" | ").normalized(QString::NormalizationForm_C);
    };
    const QString track = "Cáfe \uFB01ne: Track in Harbour Morning";
    EXPECT_EQ(words("CAFÉ FI"), track);
    EXPECT_EQ(words(" cafe "), track);
    EXPECT_EQ(words("strasse"), "Straße: Speech title");
    EXPECT_EQ(words("ESPAN"), "Español: Language");
    EXPECT_EQ(words("bour m"), "Harbour Morning: Music list");
    EXPECT_EQ(words("bells"), "Bells.mp3: File of Cáfe \uFB01ne in Harbour Morning");
    EXPECT_EQ(words("Music"), "") << "folders are not looked at";
    EXPECT_EQ(words("welc"), "welcome.mp3: File of Straße in Español");
    EXPECT_EQ(words("ding"), "ding.mp3: File of the chime");
    EXPECT_EQ(words(" "), "");
    EXPECT_EQ(words("\u0301"), "") << "an accent alone";
}

}  // namespace tessaly
