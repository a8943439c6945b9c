// SPDX-License-Identifier: GPL-3.0-or-later
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
    const QString text = QString::fromUtf8("€ „Žižka“ …");
    EXPECT_EQ(toCodePage(text), "\x80 \x84\x8Ei\x9Eka\x93 \x85");
    EXPECT_TRUE(fitsCodePage(text));
    // What it lacks becomes one question mark a character; display_text_test.cpp has more.
    for (const auto& [lacking, bytes] : {std::pair("Привет", "??????"), std::pair("a🎵b", "a?b")}) {
        EXPECT_EQ(toCodePage(QString::fromUtf8(lacking)), bytes);
        EXPECT_FALSE(fitsCodePage(QString::fromUtf8(lacking)));
    }
    EXPECT_EQ(fixedWidthText(u"Ärger", 8), "\xC4rger   ");
    EXPECT_EQ(fixedWidthText(u"Lighthouse Keeper", 16), "Lighthouse Keepe");
}

}  // namespace tessaly
