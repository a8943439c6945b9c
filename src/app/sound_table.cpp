// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/sound_table.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <numeric>
#include <tuple>

#include "app/small_widgets.h"
#include "sound/sound_words.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct ColumnLook {
    QString name;
    QString tip;
    int characters;  ///< wide
};

const ColumnLook& lookOf(int column) {
    static const ColumnLook Looks[] = {
        {u"Item"_s, u"Track or speech title"_s, 21},
        {u"List or Language"_s, u"Music list or language"_s, 17},
        {u"To Look At"_s, u"What is wrong with it"_s, 32},
        {u"Length"_s, u"Minutes and seconds"_s, 8},
        {u"LUFS"_s, u"Loudness of the whole file"_s, 7},
        {u"LU"_s, u"How much louder than the median of its list; announcements: of all"_s, 8},
        {u"dBTP"_s, u"True peak; above 0 it is clipped"_s, 8},
        {u"Before"_s, u"Silence at its start, in seconds"_s, 8},
        {u"After"_s, u"Silence at its end, in seconds"_s, 8},
        {u"Format"_s, u"Sample rate, channels and bit rate"_s, 28}};
    return Looks[column];
}

bool isNumber(int column) {
    return column >= SoundModel::LengthColumn && column <= SoundModel::EndColumn;
}

qint64 lengthOf(const KnownSound& sound) {
    return sound.whole ? sound.whole->milliseconds : sound.quick.milliseconds;
}

// What a column of numbers is sorted by; nothing where there is none.
std::optional<double> number(const ItemSound& item, int column) {
    if (!item.sound || !item.sound->quick.hasSound())
        return {};
    if (column == SoundModel::LengthColumn)
        return double(lengthOf(*item.sound));
    if (!item.sound->whole)
        return {};
    const WholeLook& whole = *item.sound->whole;
    const auto unlessSilent = [](double value) {
        return value > WholeLook::Silent ? std::optional(value) : std::nullopt;
    };
    switch (column) {
        case SoundModel::LoudnessColumn:
            return unlessSilent(whole.loudness);
        case SoundModel::DifferenceColumn:
            return whole.loudness > WholeLook::Silent ? std::optional(item.difference)
                                                      : std::nullopt;
        case SoundModel::PeakColumn:
            return unlessSilent(whole.truePeak);
        case SoundModel::StartColumn:
            return double(whole.silenceAtStart);
        default:
            return double(whole.silenceAtEnd);
    }
}

QIcon signIcon(int side, bool isThere) {
    constexpr int Sharp = 4;  // enough for any screen
    QPixmap picture(side * Sharp, side * Sharp);
    picture.fill(Qt::transparent);
    if (isThere) {
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        StatusCircle::paint(painter, picture.rect(), Verdict::Yellow);
    }
    return {picture};
}

}  // namespace

// ---- what is shown -----------------------------------------------------------------------------

SoundModel::SoundModel(const QList<ItemSound>& sounds, const QFontMetrics& metrics, QObject* parent)
    : QAbstractTableModel(parent),
      sounds_(sounds),
      sign_(signIcon(metrics.height(), true)),
      noSign_(signIcon(metrics.height(), false)) {
    for (const ItemSound& item : sounds_)
        findings_.append(item.finding());
    rows_ = sorted();
}

void SoundModel::setOnlyFindings(bool isOnly) {
    beginResetModel();
    isOnlyFindings_ = isOnly;
    rows_ = sorted();
    endResetModel();
}

QString SoundModel::text(int sound, int column) const {
    const ItemSound& item = sounds_[sound];
    switch (column) {
        case ItemColumn:
            return item.item();
        case GroupColumn:
            return item.group();
        case FormatColumn:
            return item.sound ? formatInWords(item.sound->quick) : QString();
        case WordsColumn:
            return !findings_[sound].isEmpty() ? findings_[sound]
                   : item.isDecodingDue()      ? u"not decoded yet"_s
                                               : QString();
        default:
            break;
    }
    const std::optional<double> value = number(item, column);
    if (!value)
        return u"-"_s;
    if (column == LengthColumn)
        return inMinutes(qint64(*value));
    if (column == StartColumn || column == EndColumn)
        return u"%1 s"_s.arg(*value / 1000, 0, 'f', 1);
    return inDecibels(*value, column != LoudnessColumn);
}

QString SoundModel::asText(const QList<int>& rows) const {
    QString text;
    const auto add = [&](const auto& cell) {
        for (int column = 0; column < ColumnCount; ++column)
            text += cell(column) + (column + 1 < ColumnCount ? u'\t' : u'\n');
    };
    add([](int column) { return lookOf(column).name; });
    for (const int row : rows)
        add([&](int column) { return this->text(rows_[row], column).replace(u'\t', u' '); });
    return text;
}

int SoundModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(rows_.size());
}

int SoundModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(ColumnCount);
}

QVariant SoundModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const int sound = rows_[index.row()], column = index.column();
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return text(sound, column);
        case Qt::DecorationRole:
            return column != ItemColumn ? QVariant() : hasFinding(sound) ? sign_ : noSign_;
        case Qt::AccessibleTextRole:
            return column == ItemColumn && hasFinding(sound)
                       ? text(sound, column) + u", to look at"_s
                       : text(sound, column);
        case Qt::TextAlignmentRole:
            return int(Qt::AlignVCenter | (isNumber(column) ? Qt::AlignRight : Qt::AlignLeft));
        default:
            return {};
    }
}

QVariant SoundModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (role) {
        case Qt::DisplayRole:
            return lookOf(section).name;
        case Qt::ToolTipRole:
            return lookOf(section).tip;
        case Qt::TextAlignmentRole:
            return int(Qt::AlignVCenter | (isNumber(section) ? Qt::AlignRight : Qt::AlignLeft));
        default:
            return {};
    }
}

// Selected rows stay selected.
void SoundModel::sort(int column, Qt::SortOrder order) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QList<int> kept;
    for (const QModelIndex& index : before)
        kept.append(rows_[index.row()]);
    column_ = column;
    order_ = order;
    rows_ = sorted();
    QList<int> rowsOf(sounds_.size(), -1);
    for (int row = 0; row < int(rows_.size()); ++row)
        rowsOf[rows_[row]] = row;
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i)
        after.append(index(rowsOf[kept[i]], before[i].column()));
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

// What has no number comes last, whichever way the others are sorted.
QList<int> SoundModel::sorted() const {
    QList<int> rows;
    for (int sound = 0; sound < int(sounds_.size()); ++sound)
        if (!isOnlyFindings_ || hasFinding(sound))
            rows.append(sound);
    const auto sortBy = [&rows](const auto& isBefore) {
        std::stable_sort(rows.begin(), rows.end(), isBefore);
    };
    const bool isUp = order_ == Qt::AscendingOrder;
    if (column_ < 0) {
        sortBy([this](int a, int b) { return hasFinding(a) > hasFinding(b); });
    } else if (isNumber(column_)) {
        QList<std::optional<double>> numbers;
        for (const ItemSound& item : sounds_)
            numbers.append(number(item, column_));
        sortBy([&](int a, int b) {
            if (!numbers[a] || !numbers[b])
                return numbers[a].has_value() > numbers[b].has_value();
            return isUp ? *numbers[a] < *numbers[b] : *numbers[b] < *numbers[a];
        });
    } else {
        QStringList texts;
        for (int sound = 0; sound < int(sounds_.size()); ++sound)
            texts.append(text(sound, column_).toCaseFolded());
        sortBy([&](int a, int b) {
            if (texts[a].isEmpty() || texts[b].isEmpty())
                return texts[a].isEmpty() < texts[b].isEmpty();
            return isUp ? texts[a] < texts[b] : texts[b] < texts[a];
        });
    }
    return rows;
}

// ---- the table ---------------------------------------------------------------------------------

SoundTable::SoundTable(SoundModel* model, QWidget* parent) : QTableView(parent) {
    setModel(model);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setHorizontalScrollMode(ScrollPerPixel);
    setIconSize(QSize(fontMetrics().height(), fontMetrics().height()));
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setSortIndicatorClearable(true);
    header->setSortIndicator(-1, Qt::AscendingOrder);
    header->setStretchLastSection(true);
    setSortingEnabled(true);
    for (int column = 0; column < SoundModel::ColumnCount; ++column) {
        const ColumnLook& look = lookOf(column);
        const int character = fontMetrics().averageCharWidth();
        setColumnWidth(column,
                       std::max(look.characters * character,
                                fontMetrics().horizontalAdvance(look.name) + 2 * character));
    }
}

// Some rows can always be seen.
QSize SoundTable::minimumSizeHint() const {
    constexpr int LeastRows = 3;
    return {QTableView::minimumSizeHint().width(),
            horizontalHeader()->sizeHint().height() +
                LeastRows * verticalHeader()->defaultSectionSize() +
                horizontalScrollBar()->sizeHint().height() + 2 * frameWidth()};
}

QList<int> SoundTable::selectedRows() const {
    QList<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.append(index.row());
    if (rows.isEmpty()) {
        rows.resize(model()->rowCount());
        std::iota(rows.begin(), rows.end(), 0);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

}  // namespace tessaly
