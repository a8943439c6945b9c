// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QGroupBox>
#include <utility>

#include "app/line_list.h"
#include "editor/file_display.h"
#include "editor/row_moves.h"

class QAction;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

// What the pages of music and speech are made of.

namespace tessaly {

class ListenButton;

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
        QStringView hint;   ///< what the empty list says
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
        void (Owner::*move)(const QList<RowTravel>&);
        void (Owner::*enter)();   ///< the text of the field changed
        void (Owner::*select)();  ///< the selection changed
    };
    template <typename Owner>
    void connectTo(Owner* page, const Handlers<Owner>& handlers) {
        connect(this, &ListSection::addClicked, page, handlers.add);
        connect(this, &ListSection::editClicked, page, handlers.edit);
        connect(this, &ListSection::removeClicked, page, handlers.remove);
        connect(this, &ListSection::moved, page, handlers.move);
        connect(this, &ListSection::entered, page, handlers.enter);
        connect(list_, &LineList::rowChanged, page, handlers.select);
    }

    void enable(const ListControls& enabled);

    /// Parts the commands that follow from those before.
    void addSeparator();

    /// A further command of the list's context menu, with the key that it has elsewhere.
    QAction* addCommand(const QString& text, const QString& key = {});

    /// Whether Edit was chosen in the list itself, where to leave the name as it is means Cancel.
    bool keepsEqualName() const { return keepsEqualName_; }

    /// The text for a new name.
    QString entry() const;
    void clearEntry();

    LineList* list() const { return list_; }
    QPushButton* addButton() const { return add_; }
    int limit() const { return limit_; }
    /// One of the further buttons.
    QPushButton* moreButton(qsizetype index) const { return more_[index]; }

 signals:
    void addClicked();
    void editClicked();
    void removeClicked();
    /// The rows that are selected are to go elsewhere.
    void moved(const QList<RowTravel>& travels);
    void entered();
    /// A character was refused: the place for a beep.
    void refused();

 private:
    QToolButton* makeMoveButton(const Names& names, Direction direction);
    QLineEdit* makeField(const QString& name);
    void addCommands();
    void addSelectAll();

    const int limit_;
    LineList* list_;
    QPushButton* edit_;
    QPushButton* remove_;
    QList<QPushButton*> more_;
    QLineEdit* field_;
    QPushButton* add_;
    QAction* editCommand_ = nullptr;
    QAction* removeCommand_ = nullptr;
    bool keepsEqualName_ = false;
};

/// The section with the MP3 file of what is selected.
class FileSection : public QGroupBox {
    Q_OBJECT

 public:
    /// What the controls are called. `lines` are labels, each behind its caption: size, then title,
    /// artist and album.
    struct Names {
        QStringView frame, title, path, browse, listen;
        QList<std::pair<QStringView, QStringView>> lines;  ///< name and caption
        QStringView sound = {};                            ///< the label of what it sounds like
        QStringView clear = {};  ///< the button that takes the file away; empty: there is none
        QStringView hear = {};   ///< the one that plays all of the title; likewise
    };

    FileSection(const Names& names, QWidget* parent);

    /// `sound` is what is known of its sound, and `isBad` that it will not be heard as it should.
    void showFile(const FileDisplay& display, const QString& sound, bool isBad);

    QPushButton* browseButton() const { return browse_; }
    ListenButton* listenButton() const { return listen_; }
    QPushButton* clearButton() const { return clear_; }  ///< nullptr where there is none
    QPushButton* hearButton() const { return hear_; }    ///< likewise

 private:
    QLineEdit* path_;
    QPushButton* browse_;
    ListenButton* listen_;
    QPushButton* clear_ = nullptr;
    QPushButton* hear_ = nullptr;
    QList<QLabel*> lines_;
    QLabel* sound_;
    QLabel* soundIcon_;
};

}  // namespace tessaly
