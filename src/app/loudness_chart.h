// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>

#include "app/bar_layout.h"

namespace tessaly {

/// One file as the chart shows it.
struct ChartFile {
    QString group;                     ///< whose median it is compared with
    double limit = 0;                  ///< LU from that median
    std::optional<double> difference;  ///< LU; nothing: not known
    bool isOutside = false;            ///< beyond the limit
    bool isClipped = false;
    bool isUnheard = false;  ///< silent, or no sound at all
};

/// A picture of the loudness of files: a bar for each, up or down from the median of its group.
/// What it shows can also be read in the table, so it takes no keys.
class LoudnessChart : public QWidget {
    Q_OBJECT

 public:
    explicit LoudnessChart(QWidget* parent = nullptr);

    /// What the tool tip of a file says, which is asked when it is due.
    using Words = std::function<QString(int file)>;

    /// Files of a group stand together.
    void show(const QList<ChartFile>& files, const Words& words);
    /// Marks one of them; -1 for none.
    void select(int file);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

 signals:
    /// The operator pointed at one of them.
    void chosen(int file);

 protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    struct Inks;

    QRect plot() const;
    BarLayout layout() const;
    BarLayout::Span filesAt(const QPoint& at) const;
    int standingOut(BarLayout::Span files) const;
    double yOf(double difference) const;
    void paintGroups(QPainter& painter, const BarLayout& layout, const Inks& inks) const;
    void forEachBar(
        const BarLayout& layout,
        const std::function<void(const QRect& pixels, BarLayout::Span files)>& paint) const;
    void paintBar(QPainter& painter, const QRect& pixels, BarLayout::Span files,
                  const Inks& inks) const;
    void paintMarks(QPainter& painter, const QRect& pixels, BarLayout::Span files,
                    const Inks& inks) const;
    void paintMark(QPainter& painter, const QPointF& at, bool isClipped, const Inks& inks) const;
    void paintLegend(QPainter& painter, const Inks& inks) const;

    struct Group {
        QString name;
        double limit = 0;
        bool operator==(const Group&) const = default;
    };

    QList<ChartFile> files_;
    Words words_;
    QList<Group> groups_;
    QList<int> sizes_;  // of the groups
    double range_ = 0;  // LU, up and down
    int selected_ = -1;
};

}  // namespace tessaly
