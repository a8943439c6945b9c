// SPDX-License-Identifier: GPL-3.0-or-later
// The sessions of the folder sessions, one test a file: what the window shows now is compared with
// what the file says. With TESSALY_UPDATE set the files are written anew, for people to read what
// changed.
#include "support/session.h"

namespace tessaly {

using namespace test;

namespace {

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

class SessionTest : public testing::Test {
 public:
    explicit SessionTest(QString file) : file_(std::move(file)) {}

    void TestBody() override {
        QFile file(file_);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        const QString before = QString::fromUtf8(file.readAll());
        EXPECT_TRUE(before.startsWith("# ")) << "it does not say why it is there";
        QString now;
        {
            Session session;
            now = session.play(before);
        }
        if (now == before)
            return;
        if (!qEnvironmentVariableIsSet("TESSALY_UPDATE")) {
            ADD_FAILURE() << difference(before.split('\n'), now.split('\n'));
            return;
        }
        file.resize(0);
        file.write(now.toUtf8());
    }

 private:
    const QString file_;
};

}  // namespace

void addSessions() {
    const QDir folder(TESSALY_SESSIONS);
    for (const QFileInfo& file : folder.entryInfoList({"*.txt"}))
        testing::RegisterTest("Sessions",
                              file.completeBaseName().replace('-', '_').toUtf8().constData(),
                              nullptr, nullptr, __FILE__, __LINE__, [path = file.filePath()]() {
                                  return static_cast<testing::Test*>(new SessionTest(path));
                              });
}

}  // namespace tessaly
