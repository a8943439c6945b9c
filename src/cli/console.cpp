// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/console.h"

#include <QJsonDocument>
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <string>

#include "model/numbers.h"

#ifdef Q_OS_WIN
#include <io.h>

#include "platform/windows/files.h"
#else
#include <unistd.h>
#endif

namespace tessaly::cli {

using namespace Qt::StringLiterals;

namespace {

int outputError = 0;  // errno of the first write to standard output that failed

void writeLine(FILE* stream, const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    const bool isWritten =
        std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream) == size_t(bytes.size()) &&
        std::fflush(stream) == 0;
    if (!isWritten && stream == stdout && outputError == 0)
        outputError = errno;
}

bool isTerminal(FILE* stream) {
#ifdef Q_OS_WIN
    // _isatty() takes NUL for a terminal.
    const auto handle = reinterpret_cast<HANDLE>(::_get_osfhandle(::_fileno(stream)));
    DWORD mode = 0;
    return ::GetConsoleMode(handle, &mode) != 0;
#else
    return ::isatty(::fileno(stream)) != 0;
#endif
}

}  // namespace

void print(const QString& line) {
    writeLine(stdout, line);
}

void printJson(const QJsonObject& object) {
    print(QString::fromUtf8(QJsonDocument(object).toJson()).trimmed());
}

QString outputProblem() {
    if (outputError == 0 || outputError == EPIPE)
        return {};
    return u"standard output: "_s + QString::fromLocal8Bit(std::strerror(outputError));
}

void printError(const QString& line) {
    writeLine(stderr, u"tessaly-cli: "_s + line);
}

QString errorLine(const TessalyError& error, int stepCode) {
    QString text = error.description;
    while (text.endsWith(u'.'))
        text.chop(1);
    text += u" (error %1"_s.arg(error.number);
    if (stepCode != 0)
        text += u", step %1"_s.arg(stepCode);
    return text + u')';
}

bool inputIsTerminal() {
    return isTerminal(stdin);
}

bool outputIsTerminal() {
    return isTerminal(stdout);
}

#ifdef Q_OS_WIN

Utf8Terminal::Utf8Terminal() : codePageBefore_(::GetConsoleOutputCP()) {
    ::SetConsoleOutputCP(CP_UTF8);
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (::GetConsoleMode(output, &mode))
        ::SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

Utf8Terminal::~Utf8Terminal() {
    if (codePageBefore_ != 0)
        ::SetConsoleOutputCP(codePageBefore_);
}

#else

Utf8Terminal::Utf8Terminal() = default;
Utf8Terminal::~Utf8Terminal() {
    Q_UNUSED(codePageBefore_);
}

#endif

bool askYesNo(const QString& question) {
    const QByteArray prompt = question.toUtf8() + " [y/N] ";
    std::fwrite(prompt.constData(), 1, size_t(prompt.size()), stdout);
    std::fflush(stdout);
    std::string answer;
    std::getline(std::cin, answer);
    const QString word = QString::fromStdString(answer).trimmed().toLower();
    return word == u"y" || word == u"yes";
}

// A single text of thousands of characters must not push every row apart.
constexpr qsizetype WidestColumn = 100;

void printTable(const QList<QStringList>& rows, const QList<int>& rightAligned) {
    QList<qsizetype> widths;
    for (const QStringList& row : rows)
        for (qsizetype i = 0; i < row.size(); ++i) {
            if (i >= widths.size())
                widths.append(0);
            widths[i] = std::max(widths[i], std::min(row[i].size(), WidestColumn));
        }
    for (const QStringList& row : rows) {
        QString line;
        for (qsizetype i = 0; i < row.size(); ++i) {
            const bool right = rightAligned.contains(int(i));
            line += right ? row[i].rightJustified(widths[i]) : row[i].leftJustified(widths[i]);
            line += u"  "_s;
        }
        while (line.endsWith(u' '))
            line.chop(1);
        print(line);
    }
}

QString size(qint64 bytes) {
    return megabytes(bytes);
}

}  // namespace tessaly::cli
