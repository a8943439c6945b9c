// SPDX-License-Identifier: GPL-3.0-or-later
// Transcripts of the command line. Behind its title, "# " and what it is about, a file has steps: a
// command for the shell behind "$ ", its standard output, its standard error behind "! ", and its
// exit code in brackets unless that is 0. Each starts in a new folder with the sample tour in
// `tour` and an empty `card`.
#include <QDir>
#include <QProcess>
#include <QRegularExpression>

#include "support/scratch_folder.h"
#include "support/text_tests.h"

namespace tessaly {

using namespace test;

namespace {

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

class Transcript {
 public:
    ~Transcript() {
        QProcess::execute("rm", {"-rf", here_, here_ + "-cache"});
    }  // names of any bytes

    QString play(const QString& text) const {
        QDir(here_).mkpath(QStringLiteral("card"));
        EXPECT_EQ(QProcess::execute("cp", {"-r", TESSALY_SAMPLES "/tour", here_}), 0);
        QString played;
        bool isTitle = true;
        for (const QString& line : text.split('\n')) {
            const bool isStep = line.startsWith(u"$ ");
            if (isTitle && !isStep)
                played += line + '\n';
            isTitle = isTitle && !isStep;
            if (isStep)
                played += line + '\n' + outcomeOf(line.mid(2));
        }
        return played;
    }

 private:
    QString outcomeOf(const QString& command) const {
        QProcess shell;
        QProcessEnvironment environment;
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        environment.insert(QStringLiteral("PATH"),
                           QFileInfo(QStringLiteral(TESSALY_CLI)).path() + ":/usr/bin:/bin");
        environment.insert(QStringLiteral("XDG_DATA_HOME"), here_ + "/home");
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), here_ + "-cache");
        environment.insert(QStringLiteral("SOUNDS"), QStringLiteral(TESSALY_ODD_SOUNDS));
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

    const ScratchFolder scratch_;
    // As long as any other: a project file holds paths, so that their length shows in its size.
    const QString here_ = (scratch_.path() + '/').leftJustified(120, 'x');
};

const bool areAdded = [] {
    addTextTests("Transcripts", TESSALY_TRANSCRIPTS,
                 [](const QString& text) { return Transcript().play(text); });
    return true;
}();

}  // namespace

}  // namespace tessaly
