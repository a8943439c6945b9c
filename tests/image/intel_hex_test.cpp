// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/intel_hex.h"

#include <QProcess>
#include <QStandardPaths>
#include <random>

#include "platform/error.h"
#include "support/file_questions.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

QByteArray randomBytes(std::mt19937& random, int size) {
    QByteArray bytes;
    for (int i = 0; i < size; ++i)
        bytes.append(char(random()));
    return bytes;
}

QString problemOf(const QByteArray& text) {
    return errorOf([&] { decodeHexFile(text); }).description;
}

}  // namespace

TEST(IntelHex, NumbersHaveTheirWidths) {
    const std::pair<QByteArray, const char*> cases[] = {
        {Hex2(0), "00"},    {Hex2(15), "0F"},     {Hex2(255), "FF"},     {Hex2(256), "100"},
        {Hex3(0), "000"},   {Hex3(16), "010"},    {Hex3(4095), "FFF"},   {Hex3(4096), ""},
        {Hex4(15), "000F"}, {Hex4(4096), "1000"}, {Hex4(65535), "FFFF"}, {Hex4(65536), ""}};
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(text, expected);
}

TEST(IntelHex, RecordsAreCountedHalfToEven) {
    const std::pair<qsizetype, quint32> cases[] = {{2, 0},  {8, 0},    {9, 1},       {16, 1},
                                                   {24, 2}, {40, 2},   {1000, 62},   {1001, 63},
                                                   {56, 4}, {604, 38}, {65527, 4095}};
    for (const auto& [bytes, count] : cases)
        EXPECT_EQ(headerRecordCount(bytes), count) << bytes;
}

TEST(IntelHex, SmallImagesAreKnownTexts) {
    EXPECT_EQ(EncodeImageAsHex(QByteArray::fromHex("3A07")),
              "S3A07000\r\n:020000003A07BD\r\n:00000001FF\r\n");
    const QByteArray sixteen = QByteArray::fromHex("0102") + QByteArray(14, '\0');
    EXPECT_EQ(EncodeImageAsHex(sixteen),
              "S0102001\r\n:1000000001020000000000000000000000000000ED\r\n"
              ":00001000F0\r\n:00000001FF\r\n");
    const QByteArray seventeen = EncodeImageAsHex(sixteen + '\xEF');
    EXPECT_TRUE(seventeen.contains("\r\n:01001000EF00\r\n"));  // a sum of 256 has checksum 00
    EXPECT_TRUE(EncodeImageAsHex(QByteArray(1000, '\0')).startsWith("S000003E\r\n"));
}

TEST(IntelHex, EveryLengthReadsBackAndOthersAgree) {
    std::mt19937 random(23);
    const ScratchFolder scratch;
    const QString srecCat = QStandardPaths::findExecutable("srec_cat");
#ifndef Q_OS_WIN
    ASSERT_FALSE(srecCat.isEmpty()) << "srec_cat (package srecord) is needed";
#endif
    for (const int size : {2, 15, 16, 17, 604, 4096, 65520, 65527}) {
        const QByteArray image = randomBytes(random, size);
        const QByteArray text = EncodeImageAsHex(image);
        const HexFile file = decodeHexFile(text);
        EXPECT_EQ(file.image, image);
        EXPECT_EQ(file.recordCount, headerRecordCount(size));
        // srec_cat knows no header line; all that follows is plain Intel HEX to it.
        if (srecCat.isEmpty())
            continue;
        scratch.write("body.hex", text.mid(text.indexOf('\n') + 1));
        ASSERT_EQ(QProcess::execute(srecCat, {scratch.path("body.hex"), "-intel", "-o",
                                              scratch.path("back.bin"), "-binary"}),
                  0);
        EXPECT_EQ(scratch.read("back.bin"), image) << size;
    }
}

TEST(IntelHex, AWrongLineIsNamed) {
    std::mt19937 random(1);
    const QByteArray good = EncodeImageAsHex(randomBytes(random, 40));
    EXPECT_EQ(problemOf(good), "");
    EXPECT_EQ(problemOf(QByteArray(good).replace("\r\n", "\n").toLower().replace(0, 1, "S")), "");
    const auto lineCut = [&](int line) {
        QList<QByteArray> lines = good.split('\n');
        lines.removeAt(line - 1);
        return lines.join('\n');
    };
    const struct {
        QByteArray text;
        const char* start;
    } cases[] = {
        {"", "Line 1 "},
        {good.mid(1), "Line 1 "},
        {QByteArray(good).replace("002\r", "003\r"), "Line 1 of the HEX file: the header counts 3"},
        {QByteArray(good).replace(":10001000", ":10002000"), "Line 3 "},
        {lineCut(3), "Line 3 of the HEX file: the address is 0020 instead of 0010"},
        {lineCut(4), "Line 4 of the HEX file: the last data record is missing"},
        {lineCut(5), "Line 5 of the HEX file: the end record is missing"},
        {good + ":00000001FF\r\n", "Line 6 of the HEX file: something follows"},
        {QByteArray(good).replace(":00000001FF", ":0000000000"), "Line 5 "},
    };
    for (const auto& [text, start] : cases)
        EXPECT_TRUE(problemOf(text).startsWith(start))
            << problemOf(text).toStdString() << " / " << start;
    for (qsizetype at = 8; at < good.size(); ++at) {
        QByteArray text = good;
        text[at] = text[at] == '0' ? '1' : '0';
        EXPECT_NE(problemOf(text), "") << "a change of byte " << at << " went unseen";
    }
}

TEST(IntelHex, AStandInHoldsNoData) {
    EXPECT_FALSE(holdsHexData(":00000001FF\r\n"));
    EXPECT_FALSE(holdsHexData("no firmware at all"));
    EXPECT_FALSE(holdsHexData(":020000040000FA\n:00000001FF\n"));
    EXPECT_TRUE(
        holdsHexData(":020000040000FA\n:0201100001A44"
                     "8\n:0100000001FE\n:00000001FF\n"));
}

}  // namespace tessaly
