#pragma once

#include "app/prompts.h"

class QWidget;

namespace tessaly {

/// Real dialogs, above the window that is active, else above the main window.
class QtPrompts : public Prompts {
 public:
    void tell(const Message& message) override;
    bool ask(const Message& question, bool defaultsToNo) override;
    bool offer(const Message& message, const QString& action) override;
    QString openFile(const FileRequest& request) override;
    QString saveFile(const FileRequest& request) override;
    QString pickFolder(const QString& caption, const QString& start) override;
    QString pickDrive(const Drives& drives, const QString& current) override;
    int pickLine(const QString& caption, const QStringList& lines) override;
    QString inputText(const QString& prompt, const QString& initial, int limit) override;
    bool openDocument(const QString& file) override;
    void beep() override;
};

}  // namespace tessaly
