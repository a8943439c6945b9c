#pragma once

#include <QString>

namespace tessaly::size {

constexpr int TrackFiles = 9995;
constexpr int MostTracks = 245'000;

/// Makes everything that a run at full size needs in the empty folder `folder`:
///
///   sources/    9,995 small MP3s with a title tag, in one folder
///   tour/       the same files (hard links) as the largest card: 16 languages, 548 titles, 255
///               lists of 1,318 tracks, 91 titles that lack a language, so that the image has
///               65,526 bytes; one more than an even number never is
///   all.m3u     a playlist of all sources
///   long.crd2   lists of 5,000 and 2,995 tracks and 125 titles in 16 languages: 9,995 files, more
///               than the image can hold
///   most.crd2   245,000 tracks, nearly all that a project file may hold
///
/// Throws std::exception when that fails.
void makeFiles(const QString& folder);

/// Works through the real window with those files and with `tour.crd2`, which an import has made of
/// the tour, as the files in steps/ say: every page, every kind of edit, imports, a card in
/// `folder`/window-card. Prints a table of what each step took.
///
/// Needs a QApplication. Throws std::exception when something does not come out as it must.
void workInWindow(const QString& folder);

}  // namespace tessaly::size
