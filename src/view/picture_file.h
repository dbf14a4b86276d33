// The file that a picture of the plot is saved in, as the user chooses it.
#pragma once

#include <optional>
#include <string>

#include "base/dialogs.h"

namespace kestrel {

enum class PictureKind { Png, Svg, Pdf };

struct PictureSize {
    int width = 0;  // in canvas units; in a PNG also dots
    int height = 0;
    friend bool operator==(const PictureSize&, const PictureSize&) = default;
};

struct PictureFile {
    std::string path;
    PictureKind kind = PictureKind::Png;
    PictureSize size;
};

// "1600 x 1000", blanks as one likes; none for another text and for sizes that make no picture:
// from 300 x 200 to 10000 each, and 40 million dots.
std::optional<PictureSize> pictureSizeOf(const std::string& text);

// Asks for name and kind, and for the size of a PNG; `shown` is the size on the screen, which the
// others get. A name without the ending of a kind gets that of the filter chosen. None where the
// user cancels.
std::optional<PictureFile> askPictureFile(const std::string& spectrumPath, PictureSize shown,
                                          std::string& lastDirectory, Dialogs& dialogs);

}  // namespace kestrel
