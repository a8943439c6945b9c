// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/qt_prompts.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTreeWidget>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

#include "model/numbers.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// In the order of Message::Icon.
constexpr QMessageBox::Icon Icons[] = {QMessageBox::Information, QMessageBox::Question,
                                       QMessageBox::Warning, QMessageBox::Critical};

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
    text.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
    // A long path has hardly a place to break a line at: a blank of no width is one.
    static const QRegularExpression unbroken(u"(\\S{40})"_s);
    text.replace(unbroken, u"\\1\u200B"_s);
    QMessageBox box(
        Icons[size_t(message.icon)],
        message.title.isEmpty() ? QApplication::applicationDisplayName() : message.title, text,
        buttons, parentWindow());
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(message.more);
    box.setDetailedText(message.details);
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
    return QFileDialog::getOpenFileName(parentWindow(), request.title, request.folder,
                                        request.filter);
}

QStringList QtPrompts::openFiles(const FileRequest& request) {
    return QFileDialog::getOpenFileNames(parentWindow(), request.title, request.folder,
                                         request.filter);
}

QString QtPrompts::saveFile(const FileRequest& request) {
    QFileDialog dialog(parentWindow(), request.title, request.folder, request.filter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(request.suffix);  // before the question about overwriting
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString QtPrompts::pickFolder(const QString& caption, const QString& start, FileKind) {
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
    list->setAccessibleName(caption);
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

// ---- the drive dialog --------------------------------------------------------------------------

namespace {

// Nothing of a volume that was not asked.
QString sizeText(qint64 bytes) {
    if (bytes < 0)
        return {};
    return bytes >= 1000000000 ? QString::number(double(bytes) / 1e9, 'f', 1) + u" GB"_s
                               : megabytes(bytes);
}

QList<Volume> cardLikeFirst(QList<Volume> volumes) {
    const auto rank = [](const Volume& volume) {
        return std::tuple(volume.type != DriveType::Removable, !volume.isReady, volume.totalBytes);
    };
    std::stable_sort(volumes.begin(), volumes.end(),
                     [&](const Volume& a, const Volume& b) { return rank(a) < rank(b); });
    return volumes;
}

// That whose root is `current`, else the only removable one with a card; -1 for none.
int volumeToSelect(const QList<Volume>& volumes, const QString& current) {
    const auto isCard = [](const Volume& volume) {
        return volume.type == DriveType::Removable && volume.isReady;
    };
    const auto indexOf = [&](const auto& condition) {
        const auto found = std::find_if(volumes.begin(), volumes.end(), condition);
        return found == volumes.end() ? -1 : int(found - volumes.begin());
    };
    const int row = indexOf([&](const Volume& volume) { return volume.root == current; });
    if (row >= 0)
        return row;
    return std::count_if(volumes.begin(), volumes.end(), isCard) == 1 ? indexOf(isCard) : -1;
}

}  // namespace

DriveDialog::DriveDialog(const Drives& drives, const QString& current, QWidget* parent)
    : QDialog(parent), drives_(drives), list_(new QTreeWidget) {
    setWindowTitle(tr("Select CompactFlash Drive"));
    auto* label = new QLabel(tr("Select the CompactFlash Card &Drive:"));
    label->setBuddy(list_);
    list_->setObjectName(u"lstDrives"_s);
    list_->setRootIsDecorated(false);
    list_->setUniformRowHeights(true);
    list_->header()->setStretchLastSection(false);
    list_->setHeaderLabels({tr("Drive"), tr("Name"), tr("Type"), tr("Size"), tr("Free")});
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    auto* refresh = buttons_->addButton(tr("&Refresh"), QDialogButtonBox::ActionRole);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(label);
    layout->addWidget(list_);
    layout->addWidget(buttons_);
    connect(refresh, &QPushButton::clicked, this,
            [this, current] { fill(selectedRoot().isEmpty() ? current : selectedRoot()); });
    connect(list_, &QTreeWidget::itemSelectionChanged, this, &DriveDialog::updateButtons);
    connect(list_, &QTreeWidget::itemActivated, this, &DriveDialog::accept);
    connect(buttons_, &QDialogButtonBox::accepted, this, &DriveDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    list_->setFocus();
    fill(current);
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 18);
}

void DriveDialog::fill(const QString& current) {
    list_->clear();
    const QList<Volume> volumes = cardLikeFirst(drives_.volumes());
    for (const Volume& volume : volumes) {
        const bool known = volume.isReady;
        auto* item =
            new QTreeWidgetItem(list_, {volume.root, volume.name, driveTypeName(volume.type),
                                        known ? sizeText(volume.totalBytes) : tr("no card"),
                                        known ? sizeText(volume.freeBytes) : QString()});
        item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
        item->setTextAlignment(4, Qt::AlignRight | Qt::AlignVCenter);
        if (volume.type == DriveType::Removable) {
            QFont bold = item->font(0);
            bold.setBold(true);
            for (int column = 0; column < list_->columnCount(); ++column)
                item->setFont(column, bold);
        }
    }
    for (int column = 0; column < list_->columnCount(); ++column)
        list_->resizeColumnToContents(column);
    for (int column = 0; column < list_->columnCount(); ++column)
        list_->setColumnWidth(column, list_->columnWidth(column) + fontMetrics().height());
    if (const int row = volumeToSelect(volumes, current); row >= 0)
        list_->setCurrentItem(list_->topLevelItem(row));
    updateButtons();
}

// Enter reaches the list's first row also while none is selected.
void DriveDialog::accept() {
    if (!selectedRoot().isEmpty())
        QDialog::accept();
}

void DriveDialog::updateButtons() {
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(!list_->selectedItems().isEmpty());
}

QString DriveDialog::selectedRoot() const {
    const auto selected = list_->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text(0);
}

}  // namespace tessaly
