#pragma once

#include <QString>

namespace tessaly::size {

/// Works through the real window with the files that makeFiles() made in `folder` and with
/// `tour.crd2`, which an import has made of its tour: every page, every kind of edit, imports, a
/// card in `folder`/window-card. Prints a table of what each step took.
///
/// Needs a QApplication. Throws std::exception when something does not come out as it must.
void workInWindow(const QString& folder);

}  // namespace tessaly::size
