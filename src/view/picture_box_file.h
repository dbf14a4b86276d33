// Pictures of the plot as files, with texts as texts where the kind of file has them.
#pragma once

#include <functional>
#include <string>

#include "base/canvas.h"
#include "view/picture_file.h"

namespace kestrel {

// What stands in the picture. Each draws on a canvas of its own.
struct PictureParts {
    std::function<void(Canvas& canvas)> plot;
    std::function<void(Canvas& canvas)> strip;  // below it; may be empty
    int stripHeight = 0;                        // in canvas units
    double textPoints = 0;
};

// Writes the file whole or not at all. Faults: those of the parts and of replaceFile, OutOfMemory
// where there is none for the dots of a PNG.
void savePicture(const PictureFile& file, const PictureParts& parts, const std::string& title);

}  // namespace kestrel
