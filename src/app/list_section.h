// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGroupBox>
#include <QListView>
#include <utility>

#include "editor/file_display.h"
#include "editor/item_lists.h"

class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

// What the pages of music and speech are made of.

namespace tessaly {

/// A list box of names. Thousands of them cost no more than ten: all lines are as high as the
/// first. A name that is longer than the player's display is in the tool tip, too.
class LineList : public QListView {
    Q_OBJECT

 public:
    explicit LineList(QWidget* parent = nullptr);

    /// Shows `lines` and selects `row` (-1: none), without a signal.
    void showLines(const QStringList& lines, int row);

    /// Selects a row without a signal; -1 selects none.
    void selectRow(int row);

    /// The selected row; -1 when none is.
    int row() const;

    /// The text of the selected row; empty when none is.
    QString line() const;

 signals:
    /// Another row is selected, or none is any more.
    void rowChanged();
};

/// A section with a list: what is in it, a field for a new name, and the buttons that change it.
class ListSection : public QGroupBox {
    Q_OBJECT

 public:
    /// What the controls are called and what stands on them.
    struct Names {
        QStringView item;   ///< "MuList": txtNewMuList, buttAddMuList, buttEdit..., buttDel...
        QStringView list;   ///< the list box
        QStringView image;  ///< "imgMuList": imgMuListUp, imgMuListDn
        int step;           ///< 1 or 2 on its page: the number before the title
        QStringView title;  ///< of the section, without its number
        QStringView label;  ///< of the field
        QStringView what;   ///< is in the list: "track"
        int limit = 0;      ///< most characters that can be typed for a name; 0: any number
        QList<std::pair<QStringView, QStringView>> more = {};  ///< further buttons: name and text
    };

    ListSection(const Names& names, QWidget* parent);

    /// The member functions of a page that handle the section's events.
    template <typename Owner>
    struct Handlers {
        void (Owner::*add)();
        void (Owner::*edit)();
        void (Owner::*remove)();
        void (Owner::*move)(Direction);
        void (Owner::*enter)();   ///< the text of the field changed
        void (Owner::*select)();  ///< the selection changed
    };
    template <typename Owner>
    void connectTo(Owner* page, const Handlers<Owner>& handlers) {
        connect(this, &ListSection::addClicked, page, handlers.add);
        connect(this, &ListSection::editClicked, page, handlers.edit);
        connect(this, &ListSection::removeClicked, page, handlers.remove);
        connect(this, &ListSection::moveClicked, page, handlers.move);
        connect(this, &ListSection::entered, page, handlers.enter);
        connect(list_, &LineList::rowChanged, page, handlers.select);
    }

    void enable(const ListControls& enabled);

    /// The text for a new name.
    QString entry() const;
    void clearEntry();

    LineList* list() const { return list_; }
    QPushButton* addButton() const { return add_; }
    int limit() const { return limit_; }
    /// What is in the list, as a title says it: "Track".
    QString what() const;
    /// One of the further buttons.
    QPushButton* moreButton(qsizetype index) const { return more_[index]; }

 signals:
    void addClicked();
    void editClicked();
    void removeClicked();
    void moveClicked(Direction direction);
    void entered();
    /// A character was refused: the place for a beep.
    void refused();

 private:
    QToolButton* makeMoveButton(const Names& names, Direction direction);
    QLineEdit* makeField(const QString& name);

    const int limit_;
    const QString what_;
    LineList* list_;
    QPushButton* edit_;
    QPushButton* remove_;
    QList<QPushButton*> more_;
    QLineEdit* field_;
    QPushButton* add_;
};

/// The section with the MP3 file of what is selected.
class FileSection : public QGroupBox {
    Q_OBJECT

 public:
    /// What the controls are called. `lines` are labels, each behind its caption: size, then title,
    /// artist and album.
    struct Names {
        QStringView frame, title, path, browse;
        QList<std::pair<QStringView, QStringView>> lines;  ///< name and caption
    };

    FileSection(const Names& names, QWidget* parent);

    void showFile(const FileDisplay& display);

    QPushButton* browseButton() const { return browse_; }

 private:
    QLineEdit* path_;
    QPushButton* browse_;
    QList<QLabel*> lines_;
};

}  // namespace tessaly
