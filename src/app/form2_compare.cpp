// The second spectrum of the main window: the Compare menu, and the line below the plot.

#include "app/form2_main_window.h"
#include "ui/text_codec.h"
#include "view/second_spectrum.h"

namespace kestrel {

void Form2::openSecondFile() {
    const OpenResult result =
        openSecond(module_.comparison, openTarget(), module_.settings.lastDirectory,
                   module_.lastFilterIndex, dialogs_);
    if (result == OpenResult::Loaded)
        showSecond();
    focusPlot();
}

// The range shown, the cursor and the set of peak areas stay.
void Form2::swapSpectra() {
    const std::int16_t channels = module_.spectrum.channelCount;
    kestrel::swapSpectra(module_.comparison, openTarget());
    followSpectrum();
    showLoaded([&] { view_.showNextSpectrum(channels); }, module_.peakArea.currentSet);
    focusPlot();
}

// Only the linear axis has values below 0.
void Form2::switchDifference() {
    bool& shown = module_.comparison.difference;
    shown = !shown;
    if (shown && module_.view.linLogMode == CountAxis::Logarithmic)
        view_.toggleCountAxis();
    else
        view_.redraw();
}

bool Form2::showsDifference() const {
    return module_.comparison.difference;
}

void Form2::removeSecond() {
    kestrel::removeSecond(module_.comparison);
    showSecond();
    focusPlot();
}

bool Form2::hasSecond() const {
    return module_.comparison.second != nullptr;
}

bool Form2::canScale(CompareScale scale) const {
    const ViewState& view = module_.view;
    return hasSecond() && scaleFactor(scale, pairOf(module_.comparison, module_.spectrum),
                                      view.viewStartCh, view.viewEndCh);
}

void Form2::showSecond() {
    secondStatus->setVisible(hasSecond());
    showNotice();
    showMarks();
    view_.redraw();
}

void Form2::showSecondLine() {
    if (!hasSecond())
        return;
    const QString line = toWindow(secondLine(module_.comparison, module_.spectrum, module_.view));
    secondStatus->setText(
        secondStatus->fontMetrics().elidedText(line, Qt::ElideRight, plotArea->width()));
    secondStatus->setToolTip(toSigns(module_.comparison.second->spectrum.filePath));
}

void Form2::followSpectrum() {
    updateComparison(module_.comparison, module_.spectrum);
    showNotice();
    showMarks();
}

}  // namespace kestrel
