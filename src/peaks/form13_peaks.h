// PeaksWindow: the list of all peaks of the spectrum, and the nuclides that could explain them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "base/dialogs.h"
#include "base/palette.h"
#include "base/window_placement.h"
#include "nuclide/nuclide_windows.h"
#include "peaks/peak_candidates.h"
#include "peaks/peak_list.h"
#include "peaks/second_areas.h"
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
    const std::string& marigoldDir;
    NuclideDatabase& database;
    Dialogs& dialogs;
    NuclideWindows& windows;
    std::function<EnergyEntries()> filters;  // that candidates must pass
    std::function<std::optional<SecondCounts>()> second;
    std::function<void(int channel)> moveCursor;
    std::function<void(const std::string& key)> showNuclide;
};

class PeaksWindow : public QWidget {
    Q_OBJECT

  public:
    PeaksWindow(PeaksContext context, QWidget* parent);

    // To be called when the plot has been drawn: lists the peaks of another spectrum, or with
    // another calibration, other filters or another second spectrum, once the drawing is over.
    void follow();

    Grid* const peakGrid;
    Grid* const candidateGrid;
    Grid* const lineGrid;   // of the current candidate
    QLabel* const details;  // of the current peak
    QLabel* const remark;   // what holds for all
    QPushButton* const saveButton;

  protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    // What the list is made from. No number of the file that is in no sum, which may be none and
    // then equals nothing.
    struct Basis {
        ChannelArray<std::int32_t> counts;
        std::int16_t channelCount = 0;
        Ticks liveTime;
        std::optional<Calibration> calibration;
        EnergyEntries filters;
        std::string marigoldDir;

        bool operator==(const Basis&) const = default;
    };

    void placeControls();
    QLayout* belowGrids();
    void connectControls();
    void showColumns();
    Basis basis() const;
    void listPeaks();
    std::string findCandidates();
    void compare();
    void showRows();
    void goToCursor();
    const ListedPeak* currentPeak() const;
    const Candidate* currentCandidate() const;
    void showPeak();
    void showLines();
    void pickPeak(int row);
    void pickLine(int row);
    void gridKeyDown(int keyCode);
    void showNuclide();
    void save();

    PeaksContext context_;
    std::unique_ptr<Basis> basis_;
    std::optional<SecondCounts> second_;  // that it is compared with
    PeakList list_;
    CandidateLibrary library_;
    PeakCandidates found_;
};

}  // namespace kestrel
