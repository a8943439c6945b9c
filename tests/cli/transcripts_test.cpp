// SPDX-License-Identifier: GPL-3.0-or-later
// Transcripts of the command line, a test for each file of transcripts/. A file says first why it
// is there. Then come steps: a command for the shell behind "$ ", its standard output, its standard
// error behind "! ", and its exit code in brackets unless that is 0. Each starts in a new folder
// with the sample tour in `tour` and an empty `card`. With TESSALY_UPDATE_TRANSCRIPTS in the
// environment the files are written anew, for a person to read the difference.
#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

const QString Folder = QStringLiteral(TESSALY_TRANSCRIPTS);

// What differs from machine to machine and from run to run.
QString withPlaceholders(QString text, const QString& here) {
    const QString program = QFileInfo(QStringLiteral(TESSALY_CLI)).path();
    text.remove('\r')
        .replace(here, QLatin1String("<here>"))
        .replace(program, QLatin1String("<program>"));
    static const std::pair<QRegularExpression, QString> replacements[] = {
        {QRegularExpression(QStringLiteral("settings 0x[0-9A-F]{4}")),
         QStringLiteral("settings 0x****")},
        {QRegularExpression(QStringLiteral("^(Checking|Erasing|Copying|Settling|Verifying) .* s$"),
                            QRegularExpression::MultilineOption),
         QStringLiteral("\\1 <time>")}};
    for (const auto& [pattern, replacement] : replacements)
        text.replace(pattern, replacement);
    return text;
}

class Transcript : public testing::Test {
 public:
    explicit Transcript(const QString& file) : file_(file) {}

    void TearDown() override { QProcess::execute("rm", {"-rf", here_}); }  // names of any bytes

    void TestBody() override {
        QDir(here_).mkpath(QStringLiteral("card"));
        ASSERT_EQ(QProcess::execute("cp", {"-r", TESSALY_SAMPLES "/tour", here_}), 0);
        QFile file(file_);
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const QString expected = QString::fromUtf8(file.readAll());
        QString actual;
        bool isTitle = true;
        for (const QString& line : expected.split('\n')) {
            const bool isStep = line.startsWith(u"$ ");
            if (isTitle && !isStep)
                actual += line + '\n';
            isTitle = isTitle && !isStep;
            if (isStep)
                actual += line + '\n' + outcomeOf(line.mid(2));
        }
        if (actual == expected)
            return;
        if (qEnvironmentVariableIsSet("TESSALY_UPDATE_TRANSCRIPTS")) {
            file.close();
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(actual.toUtf8());
            return;
        }
        const QString written = scratch_.write(QStringLiteral("actual"), actual.toUtf8());
        QProcess diff;
        diff.start("diff", {"-u", file_, written});
        diff.waitForFinished();
        ADD_FAILURE() << diff.readAllStandardOutput().toStdString();
    }

 private:
    QString outcomeOf(const QString& command) const {
        QProcess shell;
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("PATH"),
                           QFileInfo(QStringLiteral(TESSALY_CLI)).path() + ":/usr/bin:/bin");
        environment.insert(QStringLiteral("XDG_DATA_HOME"), here_ + "/home");
        shell.setProcessEnvironment(environment);
        shell.setWorkingDirectory(here_);
        shell.setStandardInputFile(QProcess::nullDevice());
        shell.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), command});
        EXPECT_TRUE(shell.waitForFinished(60000));
        QString outcome = QString::fromUtf8(shell.readAllStandardOutput());
        if (!outcome.isEmpty() && !outcome.endsWith('\n'))
            outcome += '\n';
        QStringList errors = QString::fromUtf8(shell.readAllStandardError()).split('\n');
        errors.removeLast();
        for (const QString& line : errors)
            outcome += "! " + line + '\n';
        EXPECT_EQ(shell.exitStatus(), QProcess::NormalExit);
        if (shell.exitCode() != 0)
            outcome += QStringLiteral("[%1]\n").arg(shell.exitCode());
        return withPlaceholders(outcome, here_);
    }

    const QString file_;
    const ScratchFolder scratch_;
    // As long as any other: a project file holds paths, so that their length shows in its size.
    const QString here_ = (scratch_.path() + '/').leftJustified(120, 'x');
};

const bool areRegistered = [] {
    for (const QFileInfo& file : QDir(Folder).entryInfoList({QStringLiteral("*.txt")}))
        testing::RegisterTest("Transcripts", qPrintable(file.completeBaseName()), nullptr, nullptr,
                              __FILE__, __LINE__, [path = file.filePath()]() -> testing::Test* {
                                  return new Transcript(path);
                              });
    return true;
}();

}  // namespace

}  // namespace tessaly
