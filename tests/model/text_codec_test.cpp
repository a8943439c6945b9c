#include "model/text_codec.h"

#include "support/scratch_folder.h"

namespace tessaly {

TEST(TextCodec, EveryByteSurvivesARoundTrip) {
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte)
        all.append(char(byte));
    EXPECT_EQ(toCodePage(fromCodePage(all)), all);
    EXPECT_TRUE(fitsCodePage(fromCodePage(all)));
}

TEST(TextCodec, KnowsTheCodePage) {
    const struct {
        QString text;
        QByteArray bytes;
        bool fits;
    } cases[] = {
        {"Grüße",
         "Gr\xFC\xDF"
         "e",
         true},
        {QString::fromUtf8("€ „Žižka“ …"), "\x80 \x84\x8Ei\x9Eka\x93 \x85", true},
        {QString::fromUtf8("Łódź"),
         "?\xF3"
         "d?",
         false},
        {QString::fromUtf8("Привет"), "??????", false},
        {QString::fromUtf8("a🎵b"), "a?b", false},
        {QString(QChar(0xD83C)) + "x", "?x", false},
        {"", "", true},
    };
    for (const auto& [text, bytes, fits] : cases) {
        EXPECT_EQ(toCodePage(text), bytes) << text.toStdString();
        EXPECT_EQ(fitsCodePage(text), fits) << text.toStdString();
    }
    EXPECT_EQ(fixedWidthText(u"Ärger", 8), "\xC4rger   ");
    EXPECT_EQ(fixedWidthText(u"Lighthouse Keeper", 16), "Lighthouse Keepe");
}

}  // namespace tessaly
