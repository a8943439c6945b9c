#include "app/qt_prompts.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "app/drive_dialog.h"

namespace tessaly {

namespace {

QMessageBox::Icon iconOf(Message::Icon icon) {
    switch (icon) {
        case Message::Icon::Question:
            return QMessageBox::Question;
        case Message::Icon::Exclamation:
            return QMessageBox::Warning;
        case Message::Icon::Critical:
            return QMessageBox::Critical;
        case Message::Icon::Information:
            break;
    }
    return QMessageBox::Information;
}

// The window that a box stands before. While another program is in front none of ours is active; a
// box that belongs to none could then appear behind the window that waits for it.
QWidget* parentWindow() {
    if (QWidget* active = QApplication::activeWindow())
        return active;
    if (QWidget* modal = QApplication::activeModalWidget())
        return modal;
    for (QWidget* window : QApplication::topLevelWidgets())
        if (window->isVisible() && qobject_cast<QMainWindow*>(window))
            return window;
    return nullptr;
}

int show(const Message& message, QMessageBox::StandardButtons buttons,
         QMessageBox::StandardButton defaultButton, const QString& action = {}) {
    QString text = message.text;
    text.replace("\r\n", "\n").replace('\r', '\n');
    // A long path has hardly a place to break a line at: a blank of no width is one.
    static const QRegularExpression unbroken("(\\S{40})");
    text.replace(unbroken, "\\1\u200B");
    QMessageBox box(
        iconOf(message.icon),
        message.title.isEmpty() ? QApplication::applicationDisplayName() : message.title, text,
        buttons, parentWindow());
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(defaultButton);
    if (QAbstractButton* button = box.button(QMessageBox::Apply))
        button->setText(action);
    return box.exec();
}

}  // namespace

void QtPrompts::tell(const Message& message) {
    show(message, QMessageBox::Ok, QMessageBox::Ok);
}

bool QtPrompts::ask(const Message& question, bool defaultsToNo) {
    return show(question, QMessageBox::Yes | QMessageBox::No,
                defaultsToNo ? QMessageBox::No : QMessageBox::Yes) == QMessageBox::Yes;
}

bool QtPrompts::offer(const Message& message, const QString& action) {
    return show(message, QMessageBox::Ok | QMessageBox::Apply, QMessageBox::Ok, action) ==
           QMessageBox::Apply;
}

QString QtPrompts::openFile(const FileRequest& request) {
    return QFileDialog::getOpenFileName(parentWindow(), {}, request.folder, request.filter);
}

QString QtPrompts::saveFile(const FileRequest& request) {
    QFileDialog dialog(parentWindow(), {}, request.folder, request.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(request.suffix);  // before the question about overwriting
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString QtPrompts::pickFolder(const QString& caption, const QString& start) {
    return QFileDialog::getExistingDirectory(parentWindow(), caption, start);
}

QString QtPrompts::pickDrive(const Drives& drives, const QString& current) {
    DriveDialog dialog(drives, current, parentWindow());
    return dialog.exec() == QDialog::Accepted ? dialog.selectedRoot() : QString();
}

int QtPrompts::pickLine(const QString& caption, const QStringList& lines) {
    QDialog dialog(parentWindow());
    dialog.setWindowTitle(caption);
    auto* list = new QListWidget;
    list->addItems(lines);
    list->setCurrentRow(0);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Open | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Open)->setEnabled(!lines.isEmpty());
    auto* layout = new QVBoxLayout(&dialog);
    layout->addWidget(list);
    layout->addWidget(buttons);
    QObject::connect(list, &QListWidget::itemActivated, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    const QFontMetrics metrics = dialog.fontMetrics();
    dialog.resize(metrics.averageCharWidth() * 70, metrics.height() * 16);
    return dialog.exec() == QDialog::Accepted ? list->currentRow() : -1;
}

QString QtPrompts::inputText(const QString& prompt, const QString& initial, int limit) {
    QInputDialog dialog(parentWindow());
    dialog.setLabelText(prompt);
    dialog.setTextValue(initial);
    if (auto* edit = dialog.findChild<QLineEdit*>(); edit && limit > 0)
        edit->setMaxLength(std::max(limit, int(initial.size())));
    return dialog.exec() == QDialog::Accepted ? dialog.textValue() : QString();
}

bool QtPrompts::openDocument(const QString& file) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(file));
}

void QtPrompts::beep() {
    QApplication::beep();
}

}  // namespace tessaly
