// PeaksWindow: the list of all peaks of the spectrum.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "base/dialogs.h"
#include "base/palette.h"
#include "base/window_placement.h"
#include "nuclide/nuclide_windows.h"
#include "peaks/peak_list.h"
#include "ui/grid.h"

namespace kestrel {

// What the window reads and writes of the program's state. All of it must outlive the window.
struct PeaksContext {
    const Spectrum& spectrum;
    const DerivedArrays& derived;
    const std::int16_t& cursorCh;
    const Palette& palette;
    WindowPlacement& placement;
    std::string& lastDirectory;
    Dialogs& dialogs;
    NuclideWindows& windows;
    std::function<void(int channel)> moveCursor;
};

class PeaksWindow : public QWidget {
    Q_OBJECT

  public:
    PeaksWindow(PeaksContext context, QWidget* parent);

    // To be called when the plot has been drawn: lists the peaks of another spectrum, or with
    // another calibration, once the drawing is over.
    void follow();

    Grid* const peakGrid;
    QLabel* const details;  // of the current peak
    QLabel* const remark;   // what holds for all
    QPushButton* const saveButton;

  protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void placeControls();
    void connectControls();
    void listPeaks();
    void goToCursor();
    const ListedPeak* currentPeak() const;
    void showDetails();
    void pickRow(int row);
    void gridKeyDown(int keyCode);
    void save();

    PeaksContext context_;
    std::unique_ptr<Spectrum> listed_;  // that the list is of
    PeakList list_;
};

}  // namespace kestrel
