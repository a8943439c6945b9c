// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/overview_table.h"

#include <QDir>
#include <QDragMoveEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "app/small_widgets.h"
#include "app/sound_watch.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int FilesLookedForAtOnce = 100;
constexpr int ColumnCharacters = 18, HeaderCharacters = 20, LeastRows = 3;

// What the sign of a cell says to those who do not see it.
QString inWords(const SpeechCell& cell) {
    switch (cell.file) {
        case SpeechFile::None:
            return u"no file"_s;
        case SpeechFile::NotSeen:
            return u"not looked for yet"_s;
        case SpeechFile::There:
            return u"there"_s;
        case SpeechFile::Missing:
            return u"missing"_s;
        case SpeechFile::NotPlayable:
            return u"not playable"_s;
    }
    return {};
}

// A sign and, in a quieter voice, the name of the file.
class CellDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const SpeechFile file =
            static_cast<const OverviewModel*>(index.model())->cellAt(index).file;
        if (file == SpeechFile::None)
            return;
        const double side = option.fontMetrics.height();
        const QRectF square(option.rect.x() + 4, option.rect.center().y() - side / 2, side, side);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (file == SpeechFile::There)
            StatusCircle::paintSign(*painter, square, Verdict::Green, inkOf(option));
        else
            StatusCircle::paint(*painter, square,
                                file == SpeechFile::Missing       ? Verdict::Red
                                : file == SpeechFile::NotPlayable ? Verdict::Yellow
                                                                  : Verdict::Grey);
        painter->restore();
    }

 protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // An empty picture keeps the room for the sign.
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(option->fontMetrics.height() + 2, 1);
        option->textElideMode = Qt::ElideRight;
        option->palette.setColor(QPalette::Text, option->palette.color(QPalette::PlaceholderText));
    }

 private:
    static QColor inkOf(const QStyleOptionViewItem& option) {
        const bool isSelected = option.state & QStyle::State_Selected;
        return option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
    }
};

}  // namespace

// ---- what is shown -----------------------------------------------------------------------------

void OverviewModel::show(const SpeechOverview& overview) {
    const bool isSameTable =
        overview.titles() == overview_.titles() && overview.languages() == overview_.languages();
    if (!isSameTable)
        beginResetModel();
    overview_ = overview;
    if (!isSameTable)
        endResetModel();
    showFound();
}

bool OverviewModel::lookFurther(const FileSystem& files, SoundWatch& sounds) {
    const auto soundOf = [&sounds](const QString& path, const FileStamp& stamp) {
        return sounds.of(path, stamp);
    };
    return overview_.lookFurther(files, soundOf, FilesLookedForAtOnce);
}

void OverviewModel::showFound() {
    if (rowCount() > 0 && columnCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int OverviewModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(overview_.titles().size());
}

int OverviewModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(overview_.languages().size());
}

QVariant OverviewModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())  // Ctrl+C asks for the current cell, whether there is one or not
        return {};
    const SpeechCell& cell = cellAt(index);
    switch (role) {
        case Qt::DisplayRole:
            return QFileInfo(QDir::fromNativeSeparators(cell.path)).fileName();
        case Qt::ToolTipRole:
            return cell.problem.isEmpty() ? cell.path : cell.path + u'\n' + cell.problem;
        case Qt::AccessibleTextRole:
            return QString(overview_.titles()[index.row()] + u", "_s +
                           overview_.languages()[index.column()] + u": "_s + inWords(cell));
        default:
            return {};
    }
}

QVariant OverviewModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    return (orientation == Qt::Vertical ? overview_.titles() : overview_.languages())
        .value(section);
}

// ---- the table ---------------------------------------------------------------------------------

OverviewTable::OverviewTable(QWidget* parent) : QTableView(parent) {
    setItemDelegate(new CellDelegate(this));
    setTabKeyNavigation(false);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setHorizontalScrollMode(ScrollPerPixel);
    for (QHeaderView* header : {horizontalHeader(), verticalHeader()}) {
        header->setSectionResizeMode(QHeaderView::Fixed);
        header->setTextElideMode(Qt::ElideRight);
        header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        header->setHighlightSections(true);
    }
    for (QWidget* target :
         {viewport(), horizontalHeader()->viewport(), verticalHeader()->viewport()}) {
        target->setAcceptDrops(true);
        target->installEventFilter(this);
    }
}

// Some rows can always be seen.
QSize OverviewTable::minimumSizeHint() const {
    return {QTableView::minimumSizeHint().width(),
            horizontalHeader()->sizeHint().height() +
                LeastRows * verticalHeader()->defaultSectionSize() +
                horizontalScrollBar()->sizeHint().height() + 2 * frameWidth()};
}

bool OverviewTable::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::DragLeave || event->type() == QEvent::Drop)
        emit filesGone();
    const bool isDrop = event->type() == QEvent::Drop;
    if (!isDrop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove)
        return QTableView::eventFilter(watched, event);
    auto* drag = static_cast<QDropEvent*>(event);
    const QStringList paths = filesIn(*drag->mimeData());
    drag->setAccepted(!paths.isEmpty());
    if (paths.isEmpty())
        return true;
    drag->setDropAction(Qt::CopyAction);
    const QPoint at = drag->position().toPoint();
    const SpeechSelection place{
        .title = watched == horizontalHeader()->viewport() ? -1 : rowAt(at.y()),
        .language = watched == verticalHeader()->viewport() ? -1 : columnAt(at.x())};
    if (isDrop)
        emit filesDropped(paths, place);
    else
        emit filesHeld(place);
    return true;
}

void OverviewTable::paintEvent(QPaintEvent* event) {
    QTableView::paintEvent(event);
    if (model()->rowCount() > 0 && model()->columnCount() > 0)
        return;
    paintHint(*this,
              u"Here are all titles in all languages.  Add a title and a language in the "_s
              u"list, or drop a folder with a folder for each language here."_s);
}

void OverviewTable::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    shareRoom();
}

void OverviewTable::reset() {
    QTableView::reset();
    shareRoom();
}

// The columns share the room as long as all have enough; then the table scrolls.
void OverviewTable::shareRoom() {
    const int columns = model() ? std::max(1, model()->columnCount()) : 1;
    const int least = fontMetrics().averageCharWidth() * ColumnCharacters;
    horizontalHeader()->setDefaultSectionSize(
        std::clamp(viewport()->width() / columns, least, 3 * least));
}

// The names of titles take as little room as they need.
void OverviewTable::updateGeometries() {
    const QFontMetrics metrics = verticalHeader()->fontMetrics();
    verticalHeader()->setMaximumWidth(metrics.averageCharWidth() * HeaderCharacters);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    QTableView::updateGeometries();
}

}  // namespace tessaly
