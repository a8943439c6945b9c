// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/display_text.h"

#include "support/scratch_folder.h"

namespace tessaly {

namespace {

const QString Note = QString::fromUtf8("🎵");  // two units, one character

}  // namespace

TEST(DisplayText, CellsAreCutAndMarked) {
    const struct {
        QString text;
        QByteArray bytes;
        QString marks;  // x where the display lacks the character
        QString length;
    } cases[] = {
        {"", "", "", "0 / 16"},
        {"Tour", "Tour", "....", "4 / 16"},
        {"Käse", "K\xE4se", "....", "4 / 16"},
        {QString::fromUtf8("Łódź?"),
         "?\xF3"
         "d??",
         "x..x.", "5 / 16"},
        {Note + "!" + Note, "?!?", "x.x", "3 / 16"},
        {QString(QChar(0xD83C)) + "a", "?a", "x.", "2 / 16"},
        {"Lighthouse Keeper", "Lighthouse Keepe", "................", "17 / 16"},
    };
    for (const auto& [text, bytes, marks, length] : cases) {
        QByteArray shown;
        QString marked;
        for (const DisplayCell& cell : displayCells(text)) {
            shown.append(char(cell.byte));
            marked.append(cell.isLacking ? 'x' : '.');
        }
        EXPECT_EQ(shown, bytes) << text.toStdString();
        EXPECT_EQ(marked, marks) << text.toStdString();
        EXPECT_EQ(displayLengthText(text), length);
    }
    EXPECT_EQ(charactersDisplayLacks(Note + QString::fromUtf8("Łódź Łódź Łó") + Note + "12Ω"),
              (QStringList{Note, QString::fromUtf8("Ł"), QString::fromUtf8("ź")}));
}

TEST(DisplayText, AFullFieldTakesBackspaceOnly) {
    const QString full(16, 'x');
    EXPECT_FALSE(refusesKey(full.chopped(1), 'a'));
    EXPECT_TRUE(refusesKey(full, 'a'));
    EXPECT_TRUE(refusesKey(full + "from a file", ' '));
    EXPECT_FALSE(refusesKey(full + "from a file", QChar(8)));
    EXPECT_TRUE(refusesKey(u"Estonian", 's', limits::LanguageName));
    EXPECT_FALSE(refusesKey(Note.repeated(15), 'a'));
}

TEST(DisplayText, PastedTextIsCutToTheRoomThereIs) {
    const struct {
        QString text, selected, pasted, inserted;
        bool isCut;
    } cases[] = {
        {"", "", "0123456789abcdef", "0123456789abcdef", false},
        {"", "", "0123456789abcdefg", "0123456789abcdef", true},
        {"Hello", "", "0123456789abcdef", "0123456789a", true},
        {"Hello", "ell", "0123456789abcdef", "0123456789abcd", true},
        {"0123456789abcdef", "", "x", "", true},
        {"0123456789abcdef", "0", "xy", "x", true},
        {"0123456789abcdef and more", "more", "x", "", true},
        {"0123456789abcdef", "", "", "", false},
        {"0123456789abcd", "", Note + Note + Note, Note + Note, true},
        {"", "", "from a\r\ncell\t1\n", "from a cell 1", false},
        {"", "", QString("Cafe") + QChar(0x301), QString::fromUtf8("Café"), false},
    };
    for (const auto& [text, selected, pasted, inserted, isCut] : cases) {
        const Paste paste = pasteInto(text, selected, pasted);
        EXPECT_EQ(paste.text, inserted) << text.toStdString() << " <- " << pasted.toStdString();
        EXPECT_EQ(paste.isCut, isCut) << text.toStdString() << " <- " << pasted.toStdString();
    }
    EXPECT_EQ(pasteInto(u"", u"", "Portuguese", limits::LanguageName).text, "Portugue");
}

TEST(DisplayText, NamesFromFilesAreCutBetweenCharacters) {
    const QString clef = QString::fromUcs4(U"\U0001D11E");
    EXPECT_EQ(firstCharacters(QString(15, 'x') + clef, 16), QString(15, 'x'));
    EXPECT_EQ(firstCharacters(QString::fromUtf8("Cafe\xCC\x81"), 4), QString("Café"));
}

}  // namespace tessaly
