#pragma once

#include "image/config_image_reader.h"
#include "model/project.h"

namespace tessaly {

/// Gives the music lists of `project`, read from a card's project file, the lines that they have in
/// the card's image. The file holds the tracks with an MP3 file alone, and numbers equal names anew
/// when it is read; the image has every line, its name cut to 16 characters. A line whose name and
/// word are those of a track gets that track's whole name, as long as they come in the file's
/// order. Every other line of the image gets a name that no track has, and a track that the image
/// lacks gets a line at the end: an image that is composed of the result equals `image` exactly
/// when both say the same.
void takeLinesFromImage(Project& project, const DecodedImage& image);

}  // namespace tessaly
