// Form5, the energy calibration: the file's own, or two points that the user types.
#pragma once

#include <array>

#include <QCheckBox>

#include "analysis/two_point_calibration.h"
#include "base/dialogs.h"
#include "spectrum/spectrum.h"
#include "ui/modal_form.h"

namespace kestrel {

class Form5 : public ModalForm {
    Q_OBJECT

  public:
    // All must outlive the window.
    Form5(Spectrum& spectrum, CalibrationChoice& choice, CalibrationTexts& kept, Dialogs& dialogs,
          WindowPlacement& placement, QWidget* parent);

    QLineEdit* const lowChannel;   // channel, low
    QLineEdit* const lowEnergy;    // energy, low
    QLineEdit* const highChannel;  // channel, high
    QLineEdit* const highEnergy;   // energy, high
    QCheckBox* const fileCalibration;
    QPushButton* const okButton;
    QPushButton* const cancelButton;

  private:
    std::array<QLineEdit*, 4> fields() const {
        return {lowChannel, lowEnergy, highChannel, highEnergy};
    }
    void placeControls();
    void showKept();
    void fileCalibrationClicked();
    void calibrate();
    void colourFields();

    Spectrum& spectrum_;
    CalibrationChoice& choice_;
    CalibrationTexts& kept_;
    Dialogs& dialogs_;
};

}  // namespace kestrel
