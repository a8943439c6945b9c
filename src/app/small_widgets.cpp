// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/small_widgets.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDropEvent>
#include <QFontDatabase>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QStyleOption>
#include <QToolTip>
#include <algorithm>
#include <memory>

#include "model/display_text.h"

namespace tessaly {

using namespace Qt::StringLiterals;

QStringList filesIn(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

void paintHint(QAbstractScrollArea& view, const QString& hint) {
    const int margin = view.fontMetrics().height();
    QPainter painter(view.viewport());
    painter.setPen(view.palette().color(QPalette::PlaceholderText));
    painter.drawText(view.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                     Qt::AlignCenter | Qt::TextWordWrap, hint);
}

QFont fixedFont(const QFont& font) {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setStyleHint(QFont::TypeWriter);
    fixed.setPointSize(font.pointSize());
    return fixed;
}

QIcon themedIcon(const QString& name, QStyle::StandardPixmap otherwise) {
    return QIcon::fromTheme(name, QApplication::style()->standardIcon(otherwise));
}

// ---- elided label -------------------------------------------------------------------------------

namespace {

const QString NarrowGap(3, u' ');

// Takes the same part of each field's room away, from their beginnings.
QString narrowFields(const QStringList& fields, const QFontMetrics& metrics, int width) {
    const int gaps = int(fields.size() - 1) * metrics.horizontalAdvance(NarrowGap);
    const int texts = metrics.horizontalAdvance(fields.join(QString()));
    QStringList shown;
    for (const QString& field : fields)
        shown.append(metrics.elidedText(
            field, Qt::ElideLeft,
            std::max(0, width - gaps) * metrics.horizontalAdvance(field) / std::max(1, texts)));
    return shown.join(NarrowGap);
}

}  // namespace

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 12, QLabel::minimumSizeHint().height()};
}

QString ElidedLabel::shownOf(const QString& text, const QFontMetrics& metrics, int width) {
    static const QRegularExpression WideGap(u" {8,}"_s);
    const QStringList fields = text.split(WideGap);
    if (fields.size() == 1 || metrics.horizontalAdvance(text) <= width)
        return metrics.elidedText(text, Qt::ElideRight, width);
    const QString narrow = fields.join(NarrowGap);
    return metrics.horizontalAdvance(narrow) <= width ? narrow
                                                      : narrowFields(fields, metrics, width);
}

bool ElidedLabel::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const bool isWhole = shownOf(text(), fontMetrics(), width()) == text();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(),
                       isWhole ? QString() : text().simplified(), this);
    return true;
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawItemText(&painter, rect(), int(Qt::AlignLeft | Qt::AlignVCenter), option.palette,
                          isEnabled(), shownOf(text(), fontMetrics(), width()), foregroundRole());
}

// ---- limited line edit --------------------------------------------------------------------------

namespace {

// Whatever the field would take: everything but control characters. With Ctrl it takes only those
// that format; with Ctrl and Alt, which are the AltGr of some keyboards, all.
bool isCharacter(const QKeyEvent& event) {
    const auto category =
        event.text().isEmpty() ? QChar::Other_Control : event.text().at(0).category();
    const bool isCommand =
        event.modifiers() & Qt::ControlModifier && !(event.modifiers() & Qt::AltModifier);
    return category != QChar::Other_Control && (category == QChar::Other_Format || !isCommand);
}

}  // namespace

void LimitedLineEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Paste)) {
        pasteLimited();
        return;
    }
    const bool isBackspace = event->key() == Qt::Key_Backspace;
    if (isCharacter(*event) || isBackspace) {
        emit keyTyped();
        if (refusesKey(text(), isBackspace ? QChar(8) : event->text().at(0), limit_)) {
            emit refused();
            return;
        }
    }
    QLineEdit::keyPressEvent(event);
}

void LimitedLineEdit::inputMethodEvent(QInputMethodEvent* event) {
    const QString input = event->commitString();
    // What the input method replaces makes room, like a selection.
    const qsizetype start =
        std::clamp<qsizetype>(cursorPosition() + event->replacementStart(), 0, text().size());
    const QString replaced = event->replacementLength() > 0
                                 ? text().mid(start, event->replacementLength())
                                 : selectedText();
    const Paste accepted = pasteInto(text(), replaced, input, limit_);
    if (accepted.isCut)
        event->setCommitString(accepted.text, event->replacementStart(),
                               event->replacementLength());
    QLineEdit::inputMethodEvent(event);
    if (accepted.isCut)
        emit refused();
}

void LimitedLineEdit::insertLimited(const QString& input) {
    const Paste accepted = pasteInto(text(), selectedText(), input, limit_);
    if (!accepted.text.isEmpty())
        insert(accepted.text);
    if (accepted.isCut)
        emit refused();
}

void LimitedLineEdit::pasteLimited() {
    insertLimited(QGuiApplication::clipboard()->text());
}

// The middle button pastes what is selected elsewhere.
void LimitedLineEdit::mouseReleaseEvent(QMouseEvent* event) {
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (event->button() != Qt::MiddleButton || !clipboard->supportsSelection()) {
        QLineEdit::mouseReleaseEvent(event);
        return;
    }
    const QString selected = clipboard->text(QClipboard::Selection);
    setCursorPosition(cursorPositionAt(event->pos()));
    insertLimited(selected);
}

// The standard menu, whose Paste would go past the limit.
void LimitedLineEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu());
    for (QAction* action : menu->actions()) {
        if (!action->text().startsWith(QLineEdit::tr("&Paste")))
            continue;
        action->disconnect();
        connect(action, &QAction::triggered, this, &LimitedLineEdit::pasteLimited);
    }
    menu->exec(event->globalPos());
}

// A copy, for the source of a move takes away what it gave, whether it came in or not. Within the
// field nothing is added by a move.
void LimitedLineEdit::dropEvent(QDropEvent* event) {
    if (event->source() == this && event->dropAction() == Qt::MoveAction) {
        QLineEdit::dropEvent(event);
        return;
    }
    setCursorPosition(cursorPositionAt(event->position().toPoint()));
    insertLimited(event->mimeData()->text());
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

// ---- status circle ------------------------------------------------------------------------------

namespace {

// What a circle shows of its verdict.
struct Look {
    Verdict verdict;
    QColor colour;
    QString name;
    QList<QPolygonF> sign;  // lines in a square of 16 x 16 units
};

const Look& lookOf(Verdict verdict) {
    const auto line = [](const QList<QPointF>& points) { return QPolygonF(points); };
    static const Look Looks[] = {
        {Verdict::Grey, {0xC0, 0xC0, 0xC0}, u"not applicable yet"_s, {line({{5, 8}, {11, 8}})}},
        {Verdict::Green,
         {0x00, 0xFF, 0x00},
         u"passed"_s,
         {line({{4.5, 8.5}, {7.0, 11.0}, {11.5, 5.5}})}},
        {Verdict::Red,
         {0xFF, 0x00, 0x00},
         u"blocking problem"_s,
         {line({{5.2, 5.2}, {10.8, 10.8}}), line({{10.8, 5.2}, {5.2, 10.8}})}},
        {Verdict::Yellow,
         {0xFF, 0xFF, 0x00},
         u"warning"_s,
         {line({{8, 4}, {8, 8.8}}), line({{8, 11.8}, {8, 11.9}})}},
    };
    return *std::find_if(std::begin(Looks), std::end(Looks),
                         [verdict](const Look& look) { return look.verdict == verdict; });
}

}  // namespace

StatusCircle::StatusCircle(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setVerdict(Verdict::Grey);
}

void StatusCircle::setVerdict(Verdict verdict) {
    verdict_ = verdict;
    setAccessibleName(lookOf(verdict).name);
    setToolTip(lookOf(verdict).name);
    update();
}

QColor StatusCircle::colour(Verdict verdict) {
    return lookOf(verdict).colour;
}

QSize StatusCircle::sizeHint() const {
    const int side = fontMetrics().height() + 4;
    return {side, side};
}

void StatusCircle::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    paint(painter, {(width() - side) / 2, (height() - side) / 2, side, side}, verdict_);
}

void StatusCircle::paint(QPainter& painter, const QRectF& square, Verdict verdict) {
    const QColor fill = colour(verdict);
    const double unit = square.width() / 16;
    painter.setPen(QPen(fill.darker(160), 0.8 * unit));
    painter.setBrush(fill);
    painter.drawEllipse(square.adjusted(unit, unit, -unit, -unit));
    paintSign(painter, square, verdict, verdict == Verdict::Red ? Qt::white : Qt::black);
}

void StatusCircle::paintSign(QPainter& painter, const QRectF& square, Verdict verdict,
                             const QColor& ink) {
    painter.save();
    painter.translate(square.topLeft());
    painter.scale(square.width() / 16, square.height() / 16);
    painter.setPen(QPen(ink, 1.9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    for (const QPolygonF& line : lookOf(verdict).sign)
        painter.drawPolyline(line);
    painter.restore();
}

}  // namespace tessaly
