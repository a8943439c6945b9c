// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "editor/speech_overview.h"

namespace tessaly {

class SoundWatch;

/// The overview as the table shows it.
class OverviewModel : public QAbstractTableModel {
    Q_OBJECT

 public:
    using QAbstractTableModel::QAbstractTableModel;

    const SpeechOverview& overview() const { return overview_; }
    void show(const SpeechOverview& overview);

    /// Looks for some more of the files; true when something else came out than before, which is
    /// shown by showFound().
    bool lookFurther(const FileSystem& files, SoundWatch& sounds);
    void lookAgain() { overview_.lookAgain(); }
    void showFound();

    SpeechSelection pairAt(const QModelIndex& index) const {
        return {.title = index.row(), .language = index.column()};
    }
    const SpeechCell& cellAt(const QModelIndex& index) const { return overview_.at(pairAt(index)); }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
    SpeechOverview overview_;
};

/// The table of the overview. Letters that are typed look for a title; files can be dropped on a
/// cell, and on the name of a title or a language.
class OverviewTable : public QTableView {
    Q_OBJECT

 public:
    explicit OverviewTable(QWidget* parent = nullptr);

    void keyboardSearch(const QString& letters) override { emit searched(letters); }

    QSize minimumSizeHint() const override;
    void reset() override;

 signals:
    void searched(const QString& letters);
    /// A row of -1 is none: dropped on a language, a title or beside all.
    void filesDropped(const QStringList& paths, const SpeechSelection& onto);
    /// Files are held over a place, and not any more.
    void filesHeld(const SpeechSelection& over);
    void filesGone();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void updateGeometries() override;

 private:
    void shareRoom();
};

}  // namespace tessaly
