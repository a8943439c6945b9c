// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/relink_dialog.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "app/long_work.h"
#include "app/relink_table.h"
#include "app/sound_watch.h"
#include "card/card_files.h"
#include "editor/missing_match.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString Title = u"Find Missing Files"_s;

// The innermost folder of a path that is still there, to start looking from; empty where that would
// be anywhere, as with a path of another system.
QString folderThatIsLeft(const FileSystem& files, const QString& path) {
    QString folder = QFileInfo(QDir::fromNativeSeparators(path)).path();
    if (QDir::isRelativePath(folder))
        return {};
    while (!QDir(folder).isRoot() && !files.isFolder(folder))
        folder = QFileInfo(folder).path();
    return QDir(folder).isRoot() ? QString() : QDir::toNativeSeparators(folder);
}

// Paths without the folders that all of them begin with.
QStringList toldApart(QStringList paths) {
    const QString first = paths.value(0);
    qsizetype common = first.size();
    for (const QString& path : std::as_const(paths))
        while (common > 0 && !path.startsWith(QStringView(first).first(common)))
            --common;
    common = first.first(common).lastIndexOf(QDir::separator()) + 1;
    for (QString& path : paths)
        path.remove(0, common);
    return paths;
}

}  // namespace

RelinkDialog::RelinkDialog(const RelinkPlan& plan, const Services& services, QWidget* parent)
    : QDialog(parent),
      services_(services),
      model_(new RelinkModel(plan, this)),
      table_(new RelinkTable(model_, this)),
      words_(new QLabel(this)) {
    setWindowTitle(Title);
    setSizeGripEnabled(true);
    auto* help = new QLabel(
        u"The project would name these files in the place of those that are missing.  "_s
        u"Files without a tick stay as they are.  One that you choose by hand may lead to others "_s
        u"that moved with it."_s,
        this);
    auto* choose = new QPushButton(u"C&hoose..."_s, this);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    help->setWordWrap(true);
    words_->setObjectName(u"lblRelink"_s);
    words_->setWordWrap(true);
    table_->setObjectName(u"tblRelink"_s);
    table_->setAccessibleName(u"Missing files"_s);
    choose->setObjectName(u"buttChoose"_s);
    choose->setToolTip(u"Choose the file of the current line yourself (F2)"_s);
    ok_ = buttons->button(QDialogButtonBox::Ok);
    ok_->setDefault(true);
    connect(choose, &QPushButton::clicked, this, &RelinkDialog::buttChoose_Click);
    connect(table_, &RelinkTable::choiceWanted, this, &RelinkDialog::buttChoose_Click);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(model_, &QAbstractItemModel::dataChanged, this, &RelinkDialog::showWords);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(help);
    layout->addWidget(table_, 1);
    auto* below = new QHBoxLayout;
    below->addWidget(words_, 1);
    below->addWidget(choose);
    layout->addLayout(below);
    layout->addWidget(buttons);
    showWords();
    table_->setCurrentIndex(model_->index(0, RelinkModel::OldColumn));
    table_->setFocus();
    resize(QSize(140 * fontMetrics().averageCharWidth(), 30 * fontMetrics().height())
               .boundedTo(screen()->availableSize() * 9 / 10));
}

const RelinkPlan& RelinkDialog::plan() const {
    return model_->plan();
}

void RelinkDialog::showWords() {
    words_->setText(plan().inWords());
    words_->setToolTip(plan().leftOut.details());
    ok_->setEnabled(plan().taken() > 0);
}

void RelinkDialog::buttChoose_Click() {
    const int row = table_->currentIndex().row();
    if (row < 0)
        return;
    if (const QString path = askForFile(plan().lines[row]); !path.isEmpty())
        model_->choose(row, path, services_.files);
    table_->setFocus();  // to go on with the next line
}

// Among several files that fit one is chosen from their list.
QString RelinkDialog::askForFile(const RelinkLine& line) {
    const QString name = lastNameOf(line.oldPath);
    if (!line.several.isEmpty()) {
        const int chosen =
            services_.prompts.pickLine(u"Which One Is %1?"_s.arg(elided(name)),
                                       toldApart(line.several) + QStringList{u"Another file..."_s});
        if (chosen < line.several.size())
            return line.several.value(chosen);  // none: cancelled
    }
    const QString beside = line.newPath.isEmpty() ? line.several.value(0) : line.newPath;
    return services_.prompts.openFile(
        {.filter = u"MP3 files (*.mp3)"_s,
         .folder = beside.isEmpty() ? QString() : QFileInfo(beside).path(),
         .title = u"Choose the MP3 File for "_s + elided(name),
         .kind = beside.isEmpty() ? FileKind::MissingFolder : FileKind::Other});
}

QStringList findMissingFiles(Project& project, const Services& services, QWidget* window) {
    const auto run = [&](const QString& what, const LongWork& work) {
        runBehindProgress(window, services.prompts, Title, what, work);
    };
    QStringList missing;
    bool isCancelled = false;
    run(u"Looking which files are missing..."_s, [&](const KeepGoing& keepGoing) {
        missing = missingFiles(project, services.files, [&](int done, int total) {
            isCancelled = isCancelled || !keepGoing(done, total);
            return !isCancelled;
        });
        return [] {};
    });
    if (isCancelled)
        return {};
    if (missing.isEmpty()) {
        services.prompts.tell({.text = u"No MP3 file of the project is missing."_s});
        return {};
    }
    const QString folder = services.prompts.pickFolder(
        u"Select the folder to look in"_s, folderThatIsLeft(services.files, missing.first()),
        FileKind::MissingFolder);
    if (folder.isEmpty())
        return {};

    RelinkPlan plan;
    bool isAgreed = false;
    run(u"Looking for the files..."_s, [&](const KeepGoing& keepGoing) {
        const SearchedFolder found = searchFolder(services.files, folder, missing, keepGoing);
        plan = planRelink(project, missing, found, playingSeconds,
                          knownFrom(copiesOnCard(services.files, project.cfDrive), services.files,
                                    services.sounds.book()),
                          keepGoing);
        return [&] {
            if (plan.leftOut.isCancelled)
                return;
            RelinkDialog dialog(plan, services, window);
            isAgreed = dialog.exec() == QDialog::Accepted;
            plan = dialog.plan();
        };
    });
    if (!isAgreed || applyRelink(project, plan) == 0)
        return {};
    QStringList paths;
    for (const RelinkLine& line : std::as_const(plan.lines))
        if (line.taken)
            paths.append(line.newPath);
    return paths;
}

}  // namespace tessaly
