// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <memory>

#include "app/main_window.h"
#include "model/card_file.h"
#include "support/card_bench.h"
#include "support/ready_prompts.h"

namespace tessaly::test {

class FakeInstance : public SingleInstance {
 public:
    bool isFirst = true;
    bool isOnlyOne() override { return isFirst; }
};

/// The real main window, started, in the surrounding of a CardBench: its project of three files is
/// saved as "tour.crd2", its card is the drive that the fake drives call removable.
struct WindowBench : CardBench {
    ReadyPrompts prompts;
    FakeInstance instance;
    LocalMp3Tags tags;
    SoundBook sounds;
    Services services;
    Project current;
    ProjectSession session{current, services.files};
    std::unique_ptr<MainWindow> window;
    const QString tourFile = scratch.path("tour.crd2");

    /// With prompts, drives and files of the caller's own where those are given.
    explicit WindowBench(Prompts* ownPrompts = nullptr, const Drives* ownDrives = nullptr,
                         FileSystem* ownFiles = nullptr)
        : services{ownFiles ? *ownFiles : files,
                   ownDrives ? *ownDrives : drives,
                   ownPrompts ? *ownPrompts : prompts,
                   tags,
                   instance,
                   sounds,
                   scratch.path("app"),
                   scratch.makeFolder("user")} {
        project.cfDrive = withLastSeparator(job.root);
        saveProject(files, tourFile, project);
        files.operations.clear();
    }

    /// Makes the window, starts it and shows it.
    bool start() {
        window = std::make_unique<MainWindow>(session, services);
        const bool started = window->startUp();
        if (started)
            window->show();
        return started;
    }

    template <typename Widget>
    Widget* find(const QString& name) const {
        auto* found = window->findChild<Widget*>(name);
        EXPECT_NE(found, nullptr) << "there is no " << name.toStdString();
        return found;
    }
    void choose(const QString& menuItem) const { find<QAction>(menuItem)->trigger(); }
    /// The row that is selected in a list, -1 for none.
    int selectedRow(const QString& list) const {
        const auto rows = find<QAbstractItemView>(list)->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    bool isEnabled(const QString& name) const { return find<QWidget>(name)->isEnabled(); }
    bool isShown(const QString& name) const { return find<QWidget>(name)->isVisible(); }
    bool isChecked(const QString& name) const { return find<QAbstractButton>(name)->isChecked(); }
    QString field(const QString& name) const { return find<QLineEdit>(name)->text(); }
    QString text(const QString& label) const { return find<QLabel>(label)->text(); }
    QStringList items(const QString& list) const {
        QStringList texts;
        const auto* model = find<QAbstractItemView>(list)->model();
        for (int row = 0; row < model->rowCount(); ++row)
            texts.append(model->index(row, 0).data().toString());
        return texts;
    }

    /// The window's own close command, as the operator gives it.
    void closeBox() const {
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(window.get(), &event);  // sendEvent() would make it the program's own
        if (event.isAccepted())
            window->hide();
    }

    /// The recovery copies that the user's folder holds.
    int recoveryCopies() const {
        return int(QDir(scratch.path("user/recovery")).entryList({"*.recovery"}).size());
    }
};

}  // namespace tessaly::test
