// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

#include "platform/error.h"

namespace tessaly::cli {

enum ExitCode : int { Done = 0, Failed = 1, Usage = 2, Blocked = 3 };

inline const QString NoMemoryText = QStringLiteral("There is not enough memory for this.");

/// One line on standard output.
void print(const QString& line = {});

/// Why something could not be written to standard output, as a sentence; empty when all was written
/// or when the reader had enough and left.
QString outputProblem();

/// A JSON document on standard output.
void printJson(const QJsonObject& object);

/// One line on standard error, behind the program's name.
void printError(const QString& line);

/// The line for an error: what happened, its number, and the step of a card run if there was one.
QString errorLine(const TessalyError& error, int stepCode = 0);

/// Whether a person sits at the stream, and not a file or another program.
bool inputIsTerminal();
bool outputIsTerminal();

/// While it lives, a terminal shows UTF-8 and obeys the codes that redraw a line. Only Windows
/// needs to be told; its console gets its former code page back, as that outlives the program.
class Utf8Terminal {
 public:
    Utf8Terminal();
    ~Utf8Terminal();
    Utf8Terminal(const Utf8Terminal&) = delete;
    Utf8Terminal& operator=(const Utf8Terminal&) = delete;

 private:
    unsigned codePageBefore_ = 0;
};

/// Asks on the terminal; only "y" or "yes" is a yes.
bool askYesNo(const QString& question);

/// Prints rows in columns, two blanks apart; the columns in `rightAligned` hold numbers.
void printTable(const QList<QStringList>& rows, const QList<int>& rightAligned = {});

/// Bytes as "1.2 MB", of 1,000,000 bytes.
QString size(qint64 bytes);

}  // namespace tessaly::cli
