// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>

#include "ledger.h"
#include "support/hands.h"
#include "world.h"

namespace tessaly::monkey {

/// The random operator. What it does depends on its seed alone; after each event it checks what
/// must hold. Events also come from inside others: while a card is written, and while a modal
/// window or a menu runs a loop of its own.
class Monkey : public QObject {
 public:
    explicit Monkey(quint64 seed);

    /// Does events until `count` of them are done or something is wrong.
    void run(qint64 count);

    /// After the last event: undoes all there is to undo, once more.
    void end();

    const QStringList& wrong() const { return wrong_; }
    qint64 events() const { return events_; }
    /// The names of the last events, oldest first.
    QStringList lastEvents() const;
    /// What the seed led to: the project and all events, as a hash in hex digits.
    QByteArray outcome() const;
    QString folder() const { return world_.bench.scratch.path(); }

 protected:
    bool event(QEvent* event) override;

 private:
    void step();
    void settleDown();
    void act(Dice& dice);
    void note(const QString& name);
    void checkAfterEvent();

    bool clickButton(QWidget* window, Dice& dice);
    bool workOnList(QWidget* window, Dice& dice);
    bool workOnField(QWidget* window, Dice& dice);
    bool workOnMenu(QWidget* window, Dice& dice);
    bool switchPage(QWidget* window, Dice& dice);
    bool pressSomeKey(QWidget* window, Dice& dice);
    bool pokeAnywhere(QWidget* window, Dice& dice);
    bool changeWindow(QWidget* window, Dice& dice);
    void somethingElse(Dice& dice);

    void actInside();

    const quint64 seed_;
    test::StoppedClocks clocks_;
    World world_;
    Ledger ledger_;
    QTimer heartbeat_;  ///< reaches loops that run inside an event
    qint64 events_ = 0, last_ = 0;
    int depth_ = 0;          ///< events inside events
    int loopsKnown_ = 0;     ///< event loops below the event that is going on
    bool runKnown_ = false;  ///< it began while a card was written
    int inLoop_ = 0;         ///< events in the loop that is open
    bool actPosted_ = false;
    std::deque<QString> names_;
    quint64 hash_ = 14695981039346656037U;
    QStringList wrong_;
};

}  // namespace tessaly::monkey
