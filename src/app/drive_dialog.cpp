#include "app/drive_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <tuple>

#include "model/numbers.h"

namespace tessaly {

namespace {

// Nothing of a volume that was not asked.
QString sizeText(qint64 bytes) {
    if (bytes < 0)
        return {};
    return bytes >= 1000000000 ? QString::number(double(bytes) / 1e9, 'f', 1) + " GB"
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
