// How the plot of the main window looks by the user's choice, and its picture as a file.

#include "app/form2_main_window.h"
#include "view/energy_strip.h"
#include "view/picture_box_file.h"

namespace kestrel {

void Form2::switchEnergyAxis() {
    bool& shown = module_.preferences.energyAxis;
    shown = !shown;
    energyStrip->setVisible(shown);
}

bool Form2::showsEnergyAxis() const {
    return module_.preferences.energyAxis;
}

void Form2::takeLook() {
    const PlotLook& look = module_.preferences;
    module_.plotPalette = plotPalette(look.colours);
    plotArea->setLook(look);
    energyStrip->setTextPoints(look.textPoints());
}

void Form2::showLook() {
    takeLook();
    buildMarks();
    view_.redraw();
}

// A fault of the writing reaches the user as every other.
void Form2::savePicture() {
    const int stripHeight = energyStrip->isVisible() ? energyStrip->height() : 0;
    const PictureSize shown{plotArea->width(), plotArea->height() + stripHeight};
    const auto file =
        askPictureFile(module_.spectrum.filePath, shown, module_.settings.lastDirectory, dialogs_);
    if (!file)
        return;
    PictureParts parts{.plot = [this](Canvas& canvas) { drawPlot(canvas); },
                       .strip = {},
                       .stripHeight = stripHeight,
                       .textPoints = module_.preferences.textPoints()};
    if (stripHeight > 0)
        parts.strip = [this](Canvas& canvas) { drawEnergyStrip(plotInput(), canvas); };
    kestrel::savePicture(*file, parts, module_.spectrum.filePath);
    focusPlot();
}

void Form2::drawPlot(Canvas& canvas) const {
    canvas.setScale(plotScale(module_.view));
    canvas.setForeColour(module_.plotPalette[palette_number::lightRed]);
    drawSpectrum(plotInput(), canvas);
    drawMarkTexts(markTextsOn(canvas), module_.plotPalette[palette_number::black], canvas);
}

}  // namespace kestrel
