// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGroupBox>
#include <QList>

#include "card/card_checks.h"

class QAbstractButton;
class QGridLayout;
class QLabel;
class QListWidget;

namespace tessaly {

class StatusCircle;

/// A panel of checks. Each row is an indicator and a sentence, with a list below them of what the
/// sentence is about; a row without a sentence is not shown.
class CheckPanel : public QGroupBox {
    Q_OBJECT
    /// What the widgets of the rows are called, parted by blanks: "crc..." begins a row, "lbl..."
    /// is its sentence, "lst..." its list if it has one.
    Q_PROPERTY(QString names READ names WRITE setNames)

 public:
    explicit CheckPanel(QWidget* parent = nullptr);

    QString names() const { return names_; }
    void setNames(const QString& names);

    /// Shows a result in a row, counted from 0.
    void showResult(const CheckResult& result, int row = 0);

    /// Puts a button to the right of the rows, before their lists in the order of the tab key.
    void addBeside(QAbstractButton* button);

    /// Puts a sentence and its button above the rows.
    void addAbove(QLabel* label, QAbstractButton* button);

 private:
    struct Row {
        StatusCircle* circle = nullptr;
        QLabel* label = nullptr;
        QListWidget* list = nullptr;
    };

    QString names_;
    QGridLayout* grid_;
    QList<Row> rows_;
};

}  // namespace tessaly
