// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "app/prompts.h"
#include "platform/process.h"

namespace tessaly {

/// An operator who answers at once: Yes to every question, and the prepared path, text and drive.
class BenchPrompts : public Prompts {
 public:
    QString path, text, drive;
    QStringList told;

    void tell(const Message& message) override { told.append(message.text); }
    bool ask(const Message&, bool) override { return true; }
    bool offer(const Message& message, const QString&) override {
        told.append(message.text);
        return true;
    }
    QString openFile(const FileRequest&) override { return path; }
    QString saveFile(const FileRequest&) override { return path; }
    QString pickFolder(const QString&, const QString&) override { return path; }
    QString pickDrive(const Drives&, const QString&) override { return drive; }
    int pickLine(const QString&, const QStringList&) override { return 0; }
    QString inputText(const QString&, const QString&, int) override { return text; }
    void beep() override {}
};

class OnlyInstance : public SingleInstance {
 public:
    bool isOnlyOne() override { return true; }
};

}  // namespace tessaly
