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

Form5::Form5(Spectrum& spectrum, CalibrationChoice& choice, CalibrationTexts& kept,
             Dialogs& dialogs, WindowPlacement& placement, QWidget* parent)
    : ModalForm("Form5", "Option...Energy Calib.", placement, parent),
      lowChannel(fixedPitchField(this, "Text1", columns, "Low channel")),
      lowEnergy(fixedPitchField(this, "Text2", columns, "Low energy in keV")),
      highChannel(fixedPitchField(this, "Text3", columns, "High channel")),
      highEnergy(fixedPitchField(this, "Text4", columns, "High energy in keV")),
      fileCalibration(new QCheckBox(QStringLiteral("&Automatic Calib."), this)),
      okButton(addButton("Command1", "&OK", "OK")),
      cancelButton(addButton("Command2", "&CANCEL", "Cancel")),
      spectrum_(spectrum),
      choice_(choice),
      kept_(kept),
      dialogs_(dialogs) {
    fileCalibration->setObjectName(QStringLiteral("Check1"));
    placeControls();
    connect(fileCalibration, &QCheckBox::clicked, this, &Form5::fileCalibrationClicked);
    connect(okButton, &QPushButton::clicked, this, &Form5::calibrate);
    connect(cancelButton, &QPushButton::clicked, this, &Form5::reject);
    for (QLineEdit* field : {lowChannel, lowEnergy, highChannel, highEnergy})
        takeNumbers(*field);
    connect(lowChannel, &QLineEdit::returnPressed, lowEnergy, qOverload<>(&QWidget::setFocus));
    connect(lowEnergy, &QLineEdit::returnPressed, highChannel, qOverload<>(&QWidget::setFocus));
    connect(highChannel, &QLineEdit::returnPressed, highEnergy, qOverload<>(&QWidget::setFocus));
    connect(highEnergy, &QLineEdit::returnPressed, okButton, qOverload<>(&QWidget::setFocus));
    showKept();
    restorePlacement();
}

void Form5::placeControls() {
    auto* grid = new QGridLayout;
    grid->addWidget(new QLabel(QStringLiteral("CH"), this), 0, 1, Qt::AlignHCenter);
    grid->addWidget(new QLabel(QStringLiteral("Energy(keV)"), this), 0, 2, Qt::AlignHCenter);
    auto* low = new QLabel(QStringLiteral("&Low"), this);
    auto* high = new QLabel(QStringLiteral("&High"), this);
    low->setBuddy(lowChannel);
    high->setBuddy(highChannel);
    grid->addWidget(low, 1, 0);
    grid->addWidget(lowChannel, 1, 1);
    grid->addWidget(lowEnergy, 1, 2);
    grid->addWidget(high, 2, 0);
    grid->addWidget(highChannel, 2, 1);
    grid->addWidget(highEnergy, 2, 2);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(okButton);
    buttons->addWidget(cancelButton);
    auto* column = new QVBoxLayout(this);
    column->addLayout(grid);
    column->addWidget(fileCalibration);
    column->addStretch();
    column->addLayout(buttons);
    QWidget* order[] = {lowChannel,      lowEnergy, highChannel, highEnergy,
                        fileCalibration, okButton,  cancelButton};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void Form5::showKept() {
    lowChannel->setText(toWindow(kept_.channelLow));
    lowEnergy->setText(toWindow(kept_.energyLow));
    highChannel->setText(toWindow(kept_.channelHigh));
    highEnergy->setText(toWindow(kept_.energyHigh));
    fileCalibration->setChecked(choice_.useFileCalibration);
    colourFields();
    lowChannel->setFocus();
}

// The choice counts at once, also when the dialog is cancelled: it decides about the next file.
void Form5::fileCalibrationClicked() {
    choice_.useFileCalibration = fileCalibration->isChecked();
    colourFields();
}

void Form5::calibrate() {
    choice_.useFileCalibration = fileCalibration->isChecked();
    const CalibrationTexts typed{.channelLow = fromWindow(lowChannel->text()),
                                 .energyLow = fromWindow(lowEnergy->text()),
                                 .channelHigh = fromWindow(highChannel->text()),
                                 .energyHigh = fromWindow(highEnergy->text())};
    if (acceptCalibration(spectrum_, choice_, typed, kept_, dialogs_))
        accept();
}

// Light where the typed points count, dark where the file's calibration does.
void Form5::colourFields() {
    const int grey = choice_.useFileCalibration ? 128 : 192;
    for (QLineEdit* field : fields()) {
        QPalette palette = field->palette();
        palette.setColor(QPalette::Base, QColor(grey, grey, grey));
        palette.setColor(QPalette::Text, Qt::black);
        field->setPalette(palette);
    }
}

}  // namespace kestrel
