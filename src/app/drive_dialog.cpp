#include "app/drive_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

#include "platform/numbers.h"

namespace tessaly {

namespace {

QString sizeText(qint64 bytes) {
    return bytes >= 1000000000 ? QString::number(double(bytes) / 1e9, 'f', 1) + " GB"
                               : megabytes(bytes);
}

}  // namespace

QList<Volume> cardLikeFirst(QList<Volume> volumes) {
    const auto rank = [](const Volume& volume) {
        return std::tuple(volume.type != DriveType::Removable, volume.totalBytes);
    };
    std::stable_sort(volumes.begin(), volumes.end(),
                     [&](const Volume& a, const Volume& b) { return rank(a) < rank(b); });
    return volumes;
}

DriveDialog::DriveDialog(const Drives& drives, QWidget* parent)
    : QDialog(parent), drives_(drives), list_(new QTreeWidget) {
    setWindowTitle(tr("Select CompactFlash Drive"));
    auto* label = new QLabel(tr("Select the CompactFlash Card &Drive:"));
    label->setBuddy(list_);
    list_->setObjectName("lstDrives");
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
    connect(refresh, &QPushButton::clicked, this, &DriveDialog::fill);
    connect(list_, &QTreeWidget::itemSelectionChanged, this, &DriveDialog::updateButtons);
    connect(list_, &QTreeWidget::itemActivated, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
    fill();
    resize(fontMetrics().averageCharWidth() * 90, fontMetrics().height() * 18);
}

void DriveDialog::fill() {
    list_->clear();
    for (const Volume& volume : cardLikeFirst(drives_.volumes())) {
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
    updateButtons();
}

void DriveDialog::updateButtons() {
    buttons_->button(QDialogButtonBox::Ok)->setEnabled(!list_->selectedItems().isEmpty());
}

QString DriveDialog::selectedRoot() const {
    const auto selected = list_->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text(0);
}

}  // namespace tessaly
