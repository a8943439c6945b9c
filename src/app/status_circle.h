#pragma once

#include <QWidget>

#include "card/card_checks.h"

namespace tessaly {

/// The indicator of a check: a filled circle in the colour of its verdict, with a sign inside for
/// those who cannot tell the colours apart (tick, cross, exclamation mark, dash).
class StatusCircle : public QWidget {
    Q_OBJECT

 public:
    explicit StatusCircle(QWidget* parent = nullptr);

    Verdict verdict() const { return verdict_; }
    void setVerdict(Verdict verdict);

    /// The colour of a verdict's circle.
    static QColor colour(Verdict verdict);

    QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    Verdict verdict_ = Verdict::Grey;
};

}  // namespace tessaly
