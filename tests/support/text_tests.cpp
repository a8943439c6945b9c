// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/text_tests.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace tessaly::test {

namespace {

using Play = std::function<QString(const QString&)>;

// The first lines that differ, with those before them.
std::string difference(const QStringList& before, const QStringList& now) {
    qsizetype at = 0;
    while (at < before.size() && at < now.size() && before[at] == now[at])
        ++at;
    QString text;
    for (qsizetype i = std::max<qsizetype>(0, at - 6); i < at; ++i)
        text += "  " + before[i] + '\n';
    for (const auto& [lines, sign] : {std::pair(&before, "- "), std::pair(&now, "+ ")})
        for (const QString& line : lines->mid(at, 12))
            text += sign + line + '\n';
    return text.toStdString();
}

class TextTest : public testing::Test {
 public:
    TextTest(QString file, Play play) : file_(std::move(file)), play_(std::move(play)) {}

    void TestBody() override {
        QFile file(file_);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString before = QString::fromUtf8(file.readAll());
        EXPECT_TRUE(before.startsWith("# ")) << "it does not say why it is there";
        const QString now = play_(before);
        if (now == before)
            return;
        if (!QCoreApplication::arguments().contains("--update")) {
            ADD_FAILURE() << difference(before.split('\n'), now.split('\n'));
            return;
        }
        file.close();
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(now.toUtf8());
    }

 private:
    const QString file_;
    const Play play_;
};

}  // namespace

void addTextTests(const char* suite, const QString& folder, const Play& play) {
    for (const QFileInfo& file : QDir(folder).entryInfoList({"*.txt"}))
        testing::RegisterTest(suite, file.completeBaseName().replace('-', '_').toUtf8().constData(),
                              nullptr, nullptr, __FILE__, __LINE__,
                              [path = file.filePath(), play]() -> testing::Test* {
                                  return new TextTest(path, play);
                              });
}

}  // namespace tessaly::test
