#include "analysis/form5_energy_calibration.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/number_field.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int columns = 10;

}  // namespace

Form5::Form5(Spectrum& spectrum, CalibrationTexts& kept, Dialogs& dialogs,
             WindowPlacement& placement, QWidget* parent)
    : ModalForm("Form5", "Option...Energy Calib.", placement, parent),
      Text1(fixedPitchField(this, "Text1", columns, "Low channel")),
      Text2(fixedPitchField(this, "Text2", columns, "Low energy in keV")),
      Text3(fixedPitchField(this, "Text3", columns, "High channel")),
      Text4(fixedPitchField(this, "Text4", columns, "High energy in keV")),
      Check1(new QCheckBox(QStringLiteral("&Automatic Calib."), this)),
      Command1(addButton("Command1", "&OK", "OK")),
      Command2(addButton("Command2", "&CANCEL", "Cancel")),
      spectrum_(spectrum),
      kept_(kept),
      dialogs_(dialogs) {
    Check1->setObjectName(QStringLiteral("Check1"));
    placeControls();
    connect(Check1, &QCheckBox::clicked, this, &Form5::Check1_Click);
    connect(Command1, &QPushButton::clicked, this, &Form5::Command1_Click);
    connect(Command2, &QPushButton::clicked, this, &Form5::reject);
    for (QLineEdit* field : {Text1, Text2, Text3, Text4})
        takeNumbers(*field);
    connect(Text1, &QLineEdit::returnPressed, Text2, qOverload<>(&QWidget::setFocus));
    connect(Text2, &QLineEdit::returnPressed, Text3, qOverload<>(&QWidget::setFocus));
    connect(Text3, &QLineEdit::returnPressed, Text4, qOverload<>(&QWidget::setFocus));
    connect(Text4, &QLineEdit::returnPressed, Command1, qOverload<>(&QWidget::setFocus));
    Form_Load();
    restorePlacement();
}

void Form5::placeControls() {
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("CH"), this), 0, 1, Qt::AlignHCenter);
    grid->addWidget(new QLabel(QStringLiteral("Energy(keV)"), this), 0, 2, Qt::AlignHCenter);
    auto* low = new QLabel(QStringLiteral("&Low"), this);
    auto* high = new QLabel(QStringLiteral("&High"), this);
    low->setBuddy(Text1);
    high->setBuddy(Text3);
    grid->addWidget(low, 1, 0);
    grid->addWidget(Text1, 1, 1);
    grid->addWidget(Text2, 1, 2);
    grid->addWidget(high, 2, 0);
    grid->addWidget(Text3, 2, 1);
    grid->addWidget(Text4, 2, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command1);
    buttons->addWidget(Command2);
    auto* column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addWidget(Check1);
    column->addStretch();
    column->addLayout(buttons);
    QWidget* order[] = {Text1, Text2, Text3, Text4, Check1, Command1, Command2};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void Form5::Form_Load() {
    Text1->setText(toWindow(kept_.channelLow));
    Text2->setText(toWindow(kept_.energyLow));
    Text3->setText(toWindow(kept_.channelHigh));
    Text4->setText(toWindow(kept_.energyHigh));
    Check1->setChecked(spectrum_.useFileCalibration == 1);
    colourFields();
    Text1->setFocus();
}

// The choice counts at once, also when the dialog is cancelled: it decides about the next file.
void Form5::Check1_Click() {
    spectrum_.useFileCalibration = Check1->isChecked() ? 1 : 0;
    colourFields();
}

void Form5::Command1_Click() {
    spectrum_.useFileCalibration = Check1->isChecked() ? 1 : 0;
    const CalibrationTexts typed{.channelLow = fromWindow(Text1->text()),
                                 .energyLow = fromWindow(Text2->text()),
                                 .channelHigh = fromWindow(Text3->text()),
                                 .energyHigh = fromWindow(Text4->text())};
    if (acceptCalibration(spectrum_, typed, kept_, dialogs_))
        accept();
}

// Light where the typed points count, dark where the file's calibration does.
void Form5::colourFields() {
    const int grey = spectrum_.useFileCalibration == 0 ? 192 : 128;
    for (QLineEdit* field : fields()) {
        QPalette palette = field->palette();
        palette.setColor(QPalette::Base, QColor(grey, grey, grey));
        palette.setColor(QPalette::Text, Qt::black);
        field->setPalette(palette);
    }
}

}  // namespace kestrel
