// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAction>
#include <QMap>
#include <QStringList>

#include "world.h"

namespace tessaly::monkey {

/// Watches what must hold from one event to the next, which no look at a single moment shows.
class Ledger {
 public:
    explicit Ledger(World& world);

    /// After each event: the mark of unsaved changes, and that no work was lost.
    QStringList afterEvent();

    /// Every now and then: the project can be saved and is read back alike.
    QStringList savedAndReadBack();

    /// After each event of the operator's: as long as there is no step to undo or redo, the project
    /// is what New, Open or a new start left.
    QStringList nothingWithoutAStep();

    /// Every now and then: all that was done is undone and done again, which leads to that start,
    /// and back to where things are now, field by field.
    QStringList undoneAndRedone();

    /// Every now and then: nothing but the card and the folder of saved projects has changed.
    QStringList outside() const;

    /// Every now and then, with nothing open: neither memory nor widgets grow without bound.
    QStringList growth();

    /// Bytes in use on the heap.
    static qint64 heapBytes();

 private:
    QStringList mark();
    bool isNowLike(const Project& other) const;
    QAction* step(const char* name) const;
    QStringList loss() const;

    World& world_;
    QMap<QString, QByteArray> untouchables_;
    QStringList places_;
    Project before_;
    std::optional<Project> start_;  // to which everything is undone; none: steps were made in
                                    // the very event in which it began
    bool differed_ = false;
    bool couldBringBack_ = false;
    QStringList clean_;  // the project in words when the mark went last
    bool wasMarked_ = false;
    qint64 mostHeap_ = 0;
};

}  // namespace tessaly::monkey
