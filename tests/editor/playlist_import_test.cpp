// reliability/fuzz imports any bytes, and cancels them half-way.
#include "editor/list_import.h"

#include <QStringEncoder>

#include "model/music_lists.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/fake_tags.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

// What is left of an import: its records as "name <- path", and the messages' texts and titles.
struct Taken {
    ImportResult::Outcome outcome;
    QStringList tracks;
    QStringList messages;
};

Taken take(const QByteArray& bytes, const QString& path = "/m/list.txt",
           const FakeTags& tags = {}) {
    Project project;
    const ImportResult result = importPlaylist(project, bytes, tags, path);
    Taken taken{result.outcome, {}, {}};
    for (const TrackRecord& record : project.TrackTable.mid(1)) {
        EXPECT_TRUE(record.groupName.is(result.list));
        taken.tracks.append(record.itemName.text() + " <- " + record.sourcePath.text());
    }
    for (const ImportMessage& message : boxesOf(result))
        taken.messages.append(message.title + ": " + message.text);
    EXPECT_TRUE(project.unsavedChanges);
    EXPECT_EQ(tracksOfMusicList(project, result.list).size(), taken.tracks.size());
    return taken;
}

QByteArray utf16(const QString& text, QStringConverter::Encoding encoding) {
    return QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text);
}

const QString ListFolder = QDir::toNativeSeparators("/m/");

const QString BothMissing =
    "Track Name and File location missing: Both Track Name and File Location missing, track not "
    "added.";

// A library's export: the name in the sixth column, the path behind the eighth.
const QByteArray Tabbed =
    "Album\tArtist\tYear\tGenre\tNo\tTitle\tLength\tSize\tPath\r\n"
    "Quay\tThe Band\t1999\tFolk\t1\tLow Tide\t3:12\t3 MB\tC:\\Music\\01 Low Tide.mp3\r\n"
    "Quay\tThe Band\t1999\tFolk\t2\t\"Nets, Ropes and more\"\t3:12\t3 MB\tC:\\Music\\02.MP3\r\n"
    "Quay\t\t\t\t\tName only\t\t\t\r\n"
    "Quay\t\t\t\t\t\t\t\tC:\\Music\\03.mp3\r\n"
    "Quay\t\t\t\t\t\t\t\t\r\n"
    "Quay\tThe Band\t1999\tFolk\t2\tToo short\tC:\\Music\\04.mp3\r\n"
    "Quay\tThe Band\t1999\tFolk\t5\tOther file\t3:12\t3 MB\tC:\\Music\\05.m4a\r\n";

const QByteArray Itunes =
    "Name\tArtist\tComposer\tLocation\r"
    "Morning Bell\tHarbour Choir\t\tMacintosh HD:Music:01 Morning Bell.mp3\r"
    "Sixteen letters and more\tX\tY\tC:\\a.mp3\r"
    "No path\tHarbour Choir";

}  // namespace

TEST(PlaylistImport, TakesEveryFormat) {
    const struct {
        const char* what;
        QByteArray bytes;
        QStringList tracks, messages;
    } cases[] = {
        {"tabbed",
         Tabbed,
         {"Low Tide <- C:\\Music\\01 Low Tide.mp3", "\"Nets, Ropes and <- C:\\Music\\02.MP3"},
         {"File location missing: File location missing, track not added.\r\nTrack name: Name only",
          "Track name missing: Track name missing, track not added.\r\nFile name: "
          "C:\\Music\\03.mp3",
          BothMissing, BothMissing,
          "File type not MP3: File type is not .MP3 or .mp3.\r\nTrack not added: Other file"}},
        {"tabbed, tabs in the path",
         "The Album\t\n1\t2\t3\t4\t5\t6\t7\t8\t9\tx.mp3",
         {"6 <- 9\tx.mp3"},
         {}},
        {"itunes, CR",
         Itunes,
         {"Morning Bell <- Macintosh HD:Music:01 Morning Bell.mp3",
          "Sixteen letters  <- C:\\a.mp3"},
         {BothMissing}},
        {"itunes, path first",
         "Location\tArtist\tName\n/m/a.mp3\tX\tA\nb.mp3\tX\tB\tmore\n",
         {"A <- /m/a.mp3", "B <- b.mp3"},
         {}},
        {"itunes, no path column",
         "Name\tArtist\nA\tX.mp3\n",
         {},
         {"File location missing: File location missing, track not added.\r\nTrack name: A"}},
        {"itunes, names alike",
         "Name\tLocation\nN\t1.mp3\nN\t2.mp3\nN\t3.mp3\n",
         {"N <- 1.mp3", "01 N <- 2.mp3", "02 N <- 3.mp3"},
         {}},
        {"extm3u",
         "#EXTM3U\t\r\n"
         "#EXTINF:184,Band, The - First\r\nC:\\Music\\1.mp3\r\n"
         "#EXTINF:184,Second\r\nsub\\2.mp3\r\n"
         "#EXTINF:184,Third\r\n/abs/3.mp3\r\n"
         "#EXTINF:184,Share\r\n\\\\nas\\m\\5.mp3\r\n"
         "#EXTINF:184,Address\r\nfile:///m/6.mp3\r\n"
         "#EXTINF:184,Colon\r\nOp. 7: Largo.mp3\r\n"
         "#EXTINF:184\r\n4.mp3\r\n"
         "#EXTINF:184,Fifth\r\n",
         {"Band, The - Firs <- C:\\Music\\1.mp3", "Second <- " + ListFolder + "sub\\2.mp3",
          "Third <- /abs/3.mp3", "Share <- \\\\nas\\m\\5.mp3", "Address <- file:///m/6.mp3",
          "Colon <- " + ListFolder + "Op. 7: Largo.mp3"},
         {"Track name missing: Track name missing, track not added.\r\nFile name: " + ListFolder +
              "4.mp3",
          "File location missing: File location missing, track not added.\r\nTrack name: Fifth"}},
        {"m3u, the last line is not handled",
         "/m/One more song of ours.mp3\nC:\\x\\b.b.MP3\nc.mp3\n",
         {"One more song of <- /m/One more song of ours.mp3", "b.b <- C:\\x\\b.b.MP3"},
         {}},
        {"m3u, one line", "a.mp3", {}, {}},
        {"m3u, odd lines",
         "a.mp3\n\n#EXTINF:3,x\n/m.mp3/\n.mp3\nd.d/emp3\nend",
         {"a <- a.mp3", "emp3 <- d.d/emp3"},
         {BothMissing,
          "File type not MP3: File type is not .MP3 or .mp3.\r\nTrack not added: #EXTINF:3,x",
          "Track name missing: Track name missing, track not added.\r\nFile name: /m.mp3/",
          "Track name missing: Track name missing, track not added.\r\nFile name: .mp3"}},
    };
    for (const auto& [what, bytes, tracks, messages] : cases) {
        SCOPED_TRACE(what);
        const Taken taken = take(bytes);
        EXPECT_EQ(taken.outcome, ImportResult::Outcome::Imported);
        EXPECT_EQ(taken.tracks, tracks);
        EXPECT_EQ(taken.messages, messages);
    }
}

TEST(PlaylistImport, TellsWhatIsNoPlaylist) {
    for (const char* bytes :
         {"", "\n", "#EXTM3U\n#EXTINF:1,a\na.mp3\n", "SONG.MP3\nb.mp3\n", "Title\tName\tLocation\n",
          "album\tx\n", "\tAlbum\n", "Location\tname\n", "PK\x03\x04 zip"}) {
        SCOPED_TRACE(bytes);
        const Taken taken = take(bytes);
        EXPECT_EQ(taken.outcome, ImportResult::Outcome::Invalid);
        EXPECT_EQ(taken.messages, QStringList(": Invalid playlist format, cannot open"));
    }
}

TEST(PlaylistImport, ReadsEveryEncodingAndLineEnd) {
    const QString text = QString::fromUtf8("Name\tLocation\nCafé\tC:\\Römer\\1.mp3\n€\t2.mp3");
    const QStringList expected = {QString::fromUtf8("Café <- C:\\Römer\\1.mp3"),
                                  QString::fromUtf8("€ <- 2.mp3")};
    for (const char* end : {"\n", "\r\n", "\r"}) {
        const QString lines = QString(text).replace('\n', end);
        for (const QString& closed : {lines, lines + end})
            for (const QByteArray& bytes :
                 {closed.toUtf8(), "\xEF\xBB\xBF" + closed.toUtf8(), toCodePage(closed),
                  utf16(closed, QStringConverter::Utf16LE),
                  utf16(closed, QStringConverter::Utf16BE)}) {
                const Taken taken = take(bytes);
                EXPECT_EQ(taken.tracks, expected) << bytes.toHex(' ').toStdString();
                EXPECT_EQ(taken.messages, QStringList());
            }
    }
    EXPECT_EQ(take("Name\tLocation\n\n").messages, QStringList(BothMissing));
    // A mark says UTF-8 even where bytes are not.
    EXPECT_EQ(take("\xEF\xBB\xBFName\tLocation\n\xE9\t1.mp3").tracks,
              QStringList(QString(QChar(0xFFFD)) + " <- 1.mp3"));
}

TEST(PlaylistImport, NamesTheListAfterTheFile) {
    const std::pair<QString, QString> cases[] = {
        {"/m/Twenty letters, no less.TXT", "Twenty letters, "},
        {"C:\\Lists\\Summer.m3u8", "Summer"},
        {"/m/a.txt.m3u", "a"},
        {"/m/a.m3u.txt", "a.m3u"},
        {"/m/.txt", "Music"},
        {"/m/other.list", "Music"}};
    for (const auto& [path, name] : cases) {
        Project project;
        EXPECT_EQ(importPlaylist(project, Itunes, FakeTags(), path).list, name);
        EXPECT_EQ(importPlaylist(project, Itunes, FakeTags(), path).list, "01 " + name);
    }
}

TEST(PlaylistImport, PlainListsAreNamedByTags) {
    FakeTags tags;
    tags.blocks["1.mp3"] = {titled("Second block of all titles"), titled("Old")};
    tags.blocks["2.mp3"] = {titled(""), titled("Old")};
    EXPECT_EQ(take("1.mp3\nC:\\2.mp3\n3.mp3\nlast", "/m/l.m3u", tags).tracks,
              (QStringList{"Second block of  <- 1.mp3", "Old <- C:\\2.mp3", "3 <- 3.mp3"}));
}

TEST(PlaylistImport, RefusesWhatNoMemoryHolds) {
    const QByteArray header = "Name\tLocation\n", track = "N\ta.mp3\n";
    for (const QByteArray& bytes :
         {header + track.repeated(MostImportedTracks + 1), header + track.repeated(20000),
          header + QByteArray(MostPlaylistBytes, ' ')}) {
        Project project, expected;
        expected.unsavedChanges = true;
        EXPECT_THROW(importPlaylist(project, bytes, FakeTags(), "/p.txt"), TessalyError);
        EXPECT_TRUE(project == expected);
    }
    // The boxes stay few and small, whatever stands in the lines.
    const Taken odd = take(header + QByteArray(1'000'000, '\t') + "\n\t" +
                           QByteArray(3'000'000, 'x') + ".mp3\n" + QByteArray("N\n").repeated(99));
    ASSERT_EQ(odd.messages.size(), 11);
    EXPECT_LT(odd.messages.join("").size(), 2000);
    EXPECT_EQ(odd.messages.last(), "Tracks not added: 91 more entries were left out.");
    // Accents that pile up must not take longer than their number.
    QByteArray accents = header;
    for (int i = 0; i < 500'000; ++i)
        accents += i % 2 ? "\xCC\x81" : "\xCC\xA3";
    EXPECT_EQ(take(accents + "\ta.mp3").tracks.size(), 1);
}

}  // namespace tessaly
