// The peaks window of the main window, and the calibration from peaks.

#include "analysis/calibration_file.h"
#include "app/form2_main_window.h"
#include "peaks/form14_peak_calibration.h"

namespace kestrel {

// One that cannot be scaled is drawn as it is, and measured so.
std::optional<SecondCounts> Form2::secondForPeaks() const {
    const Comparison& comparison = module_.comparison;
    if (comparison.second == nullptr)
        return std::nullopt;
    const ViewState& view = module_.view;
    const auto factor = factorOf(comparison, module_.spectrum, view.viewStartCh, view.viewEndCh);
    return SecondCounts{comparison.onFirst.counts, factor.value_or(1)};
}

// The filters of the energy list while it is open, or those that it opens with.
PeaksContext Form2::peaksContext() {
    return {.spectrum = module_.spectrum,
            .derived = module_.derived,
            .cursorCh = module_.view.cursorCh,
            .palette = module_.palette,
            .placement = module_.preferences.peaksWindow,
            .lastDirectory = module_.settings.lastDirectory,
            .marigoldDir = module_.settings.marigoldDir,
            .database = module_.database,
            .dialogs = dialogs_,
            .windows = *this,
            .filters = [this] { return form9_ ? form9_->entries() : EnergyEntries(); },
            .second = [this] { return secondForPeaks(); },
            .moveCursor = [this](int channel) { view_.jumpTo(channel); },
            .showNuclide =
                [this](const std::string& key) {
                    selectNuclide(key);
                    showNuclideData();
                }};
}

void Form2::showPeaks() {
    if (!peaks_)
        peaks_ = new PeaksWindow(peaksContext(), this);
    peaks_->show();
    peaks_->raise();
    peaks_->activateWindow();
}

void Form2::calibrateFromPeaks() {
    Preferences& preferences = module_.preferences;
    Form14 form14(
        {module_.spectrum, module_.calibrationChoice, module_.derived, preferences.peakCalibration,
         module_.palette, preferences.peakCalibrationWindow, module_.settings.lastDirectory,
         module_.settings.marigoldDir, module_.database, dialogs_},
        this);
    if (form14.exec() == QDialog::Accepted)
        showCalibration();
    focusPlot();
}

void Form2::useLastPeakCalibration() {
    const ReadPoints last = readCalibrationText(module_.preferences.peakCalibration);
    const FittedPeaks fitted = fitCalibration(last.points, module_.spectrum.channelCount);
    if (fitted.refusal.empty()) {
        keepCalibration(fitted.calibration, module_.spectrum, module_.calibrationChoice);
        showCalibration();
    } else {
        dialogs_.message({last.refusal.empty() ? fitted.refusal : last.refusal});
    }
    focusPlot();
}

bool Form2::hasLastPeakCalibration() const {
    return !module_.preferences.peakCalibration.empty();
}

// One that has changed.
void Form2::showCalibration() {
    followSpectrum();
    view_.redraw();
}

}  // namespace kestrel
