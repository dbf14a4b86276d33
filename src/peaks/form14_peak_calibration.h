// Form14, the energy calibration through many peaks: their energies are typed, taken from the lines
// of a nuclide, or those of a calibration source that is recognised.
#pragma once

#include <string>
#include <vector>

#include <QComboBox>
#include <QLabel>
#include <QTableWidget>

#include "analysis/calibration_file.h"
#include "base/dialogs.h"
#include "nuclide/database.h"
#include "peaks/calibration_table.h"
#include "peaks/form14_residual_plot.h"
#include "ui/grid.h"
#include "ui/modal_form.h"

namespace kestrel {

// What the window reads and writes of the program's state. All of it must outlive the window.
struct PeakCalibrationContext {
    Spectrum& spectrum;
    CalibrationChoice& calibrationChoice;
    const DerivedArrays& derived;
    std::string& lastText;  // of the points applied last, as in their file; empty for none
    const Palette& palette;
    WindowPlacement& placement;
    std::string& lastDirectory;
    const std::string& marigoldDir;
    NuclideDatabase& database;
    Dialogs& dialogs;
};

class Form14 : public ModalForm {
    Q_OBJECT

  public:
    Form14(const PeakCalibrationContext& context, QWidget* parent);

    enum Column { Channel, Error, Net, Energy, Fitted, Residual, Used };

    QTableWidget* const peakTable;
    QLabel* const recognition;  // which source the peaks are from
    QPushButton* const fillButton;
    QLineEdit* const nuclideField;
    Grid* const lineGrid;  // of that nuclide
    QPushButton* const matchButton;
    QComboBox* const curveChoice;
    QLabel* const summary;
    ResidualPlot* const residualPlot;
    QPushButton* const saveButton;
    QPushButton* const loadButton;
    QPushButton* const lastButton;
    QPushButton* const applyButton;
    QPushButton* const cancelButton;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void placeControls();
    void makeTable();
    QLayout* nuclidePart();
    QLayout* buttonRow();
    void connectControls();
    void recognize();

    void showTable();
    void showFit();
    void showRow(int row);
    void showResiduals();
    bool isFitted() const { return fitted_.refusal.empty(); }
    CalibrationRow* currentRow();

    void energyTyped(const QTableWidgetItem* item);
    void switchCurrent();
    void clearCurrent();
    void fillIn();
    void findLines();
    void giveLine(int row);
    void matchLines();
    void chooseCurve(int index);
    void showPoints(const ReadPoints& read, const std::string& path);
    void save();
    void load();
    void apply();

    PeakCalibrationContext context_;
    CalibrationTable table_;
    FittedPeaks fitted_;
    std::optional<RecognizedSource> recognized_;
    std::vector<SourceLine> lines_;
};

}  // namespace kestrel
