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
    Form5(Spectrum& spectrum, CalibrationTexts& kept, Dialogs& dialogs, WindowPlacement& placement,
          QWidget* parent);

    QLineEdit* const Text1;  // channel, low
    QLineEdit* const Text2;  // energy, low
    QLineEdit* const Text3;  // channel, high
    QLineEdit* const Text4;  // energy, high
    QCheckBox* const Check1;
    QPushButton* const Command1;
    QPushButton* const Command2;

  private:
    std::array<QLineEdit*, 4> fields() const { return {Text1, Text2, Text3, Text4}; }
    void placeControls();
    void Form_Load();
    void Check1_Click();
    void Command1_Click();
    void colourFields();

    Spectrum& spectrum_;
    CalibrationTexts& kept_;
    Dialogs& dialogs_;
};

}  // namespace kestrel
