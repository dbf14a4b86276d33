#include "peaks/form14_peak_calibration.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "base/input_file.h"
#include "base/number_text.h"
#include "base/text.h"
#include "nuclide/nuclide_data.h"
#include "nuclide/nuclide_key.h"
#include "spectrum/file_name.h"
#include "ui/number_field.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr std::string_view lineFormat = "> |>  Energy|>  Int.(%)";
constexpr const char* fileFilter = "calibration by peaks";

// X-rays lie too close together for most detectors.
std::vector<SourceLine> gammaLines(const NuclideData& nuclide) {
    std::vector<SourceLine> lines;
    for (const NuclideRow& row : nuclide.rows) {
        if (kindOf(row) == LineKind::Gamma)
            lines.push_back({parseLeadingNumber(row.energy), parseLeadingNumber(row.intensity)});
    }
    return lines;
}

std::vector<GridRow> lineRows(const std::vector<SourceLine>& lines) {
    std::vector<GridRow> rows;
    rows.reserve(lines.size());
    for (const SourceLine& line : lines)
        rows.push_back(
            {{formatNumber(line.energy, "0.00")}, {formatNumber(line.intensity, "0.00")}});
    return rows;
}

bool beginsNumber(const QKeyEvent& key) {
    return !key.text().isEmpty() && key.text().front().isDigit();
}

}  // namespace

Form14::Form14(const PeakCalibrationContext& context, QWidget* parent)
    : ModalForm("Form14", "Option...Calibrate from Peaks", context.placement, parent),
      peakTable(new QTableWidget(this)),
      recognition(new QLabel(this)),
      fillButton(addButton("fill", "&Fill In", "Fill in the energies of the source")),
      nuclideField(fixedPitchField(this, "nuclide", 8, "Nuclide")),
      lineGrid(new Grid(context.palette, this)),
      matchButton(addButton("match", "&Match", "Give the lines to the peaks that lie there")),
      curveChoice(new QComboBox(this)),
      summary(new QLabel(this)),
      residualPlot(new ResidualPlot(this)),
      saveButton(addButton("save", "&Save...", "Save the peaks and energies")),
      loadButton(addButton("load", "&Load...", "Load peaks and energies")),
      lastButton(addButton("last", "Last &Used", "Peaks and energies applied last")),
      applyButton(addButton("apply", "&Apply", "Calibrate")),
      cancelButton(addButton("cancel", "&Cancel", "Cancel")),
      context_(context),
      table_(calibrationTable(listPeaks(context.spectrum, context.derived))) {
    makeTable();
    placeControls();
    connectControls();
    recognize();
    showTable();
    peakTable->setFocus();
    resize(860, 640);
    restorePlacement();
}

void Form14::makeTable() {
    peakTable->setObjectName(QStringLiteral("points"));
    peakTable->setAccessibleName(tr("Peaks and their energies"));
    const QStringList headings = {tr("Channel"), tr("Error"),    tr("Net"), tr("Energy (keV)"),
                                  tr("Fitted"),  tr("Residual"), tr("Used")};
    peakTable->setColumnCount(static_cast<int>(headings.size()));
    peakTable->setHorizontalHeaderLabels(headings);
    peakTable->setSelectionBehavior(QAbstractItemView::SelectRows);
    peakTable->setSelectionMode(QAbstractItemView::SingleSelection);
    peakTable->setTabKeyNavigation(false);
    peakTable->verticalHeader()->hide();
    peakTable->verticalHeader()->setDefaultSectionSize(peakTable->fontMetrics().height() + 6);
    peakTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    peakTable->setToolTip(
        tr("Type an energy; Space switches the peak off or on, Delete takes its "
           "energy away"));
    peakTable->installEventFilter(this);
}

void Form14::placeControls() {
    for (QLabel* label : {recognition, summary}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    recognition->setObjectName(QStringLiteral("recognition"));
    summary->setObjectName(QStringLiteral("summary"));
    auto* source = new QHBoxLayout;
    source->addWidget(recognition, 1);
    source->addWidget(fillButton);
    auto* tables = new QHBoxLayout;
    tables->addWidget(peakTable, 1);
    tables->addLayout(nuclidePart());
    auto* column = new QVBoxLayout(this);
    column->addLayout(source);
    column->addLayout(tables, 3);
    column->addWidget(residualPlot, 1);
    column->addWidget(summary);
    column->addLayout(buttonRow());
}

QLayout* Form14::nuclidePart() {
    auto* label = new QLabel(tr("&Nuclide"), this);
    label->setBuddy(nuclideField);
    nuclideField->setToolTip(tr("Name of a nuclide, as Eu-152; Enter lists its lines"));
    selectOnFocus(*nuclideField);
    lineGrid->setObjectName(QStringLiteral("lines"));
    lineGrid->setAccessibleName(tr("Lines of the nuclide"));
    lineGrid->setToolTip(tr("Enter gives the energy of the line to the peak chosen"));
    lineGrid->setFormat(lineFormat);
    lineGrid->setFixedWidth(210);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(nuclideField, 1);
    auto* column = new QVBoxLayout;
    column->addLayout(row);
    column->addWidget(lineGrid, 1);
    column->addWidget(matchButton);
    return column;
}

QLayout* Form14::buttonRow() {
    curveChoice->setObjectName(QStringLiteral("curve"));
    curveChoice->setAccessibleName(tr("Curve"));
    curveChoice->addItems({tr("Straight line"), tr("Parabola")});
    auto* label = new QLabel(tr("Cur&ve"), this);
    label->setBuddy(curveChoice);
    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(curveChoice);
    row->addStretch();
    for (QPushButton* button : {saveButton, loadButton, lastButton, applyButton, cancelButton})
        row->addWidget(button);
    QWidget* order[] = {peakTable,  fillButton, nuclideField, lineGrid,    matchButton, curveChoice,
                        saveButton, loadButton, lastButton,   applyButton, cancelButton};
    for (std::size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
    return row;
}

void Form14::connectControls() {
    connect(peakTable, &QTableWidget::itemChanged, this, &Form14::energyTyped);
    connect(peakTable, &QTableWidget::currentCellChanged, this, &Form14::showResiduals);
    connect(fillButton, &QPushButton::clicked, this, &Form14::fillIn);
    connect(nuclideField, &QLineEdit::returnPressed, this, &Form14::findLines);
    connect(lineGrid, &Grid::rowPicked, this, &Form14::giveLine);
    connect(matchButton, &QPushButton::clicked, this, &Form14::matchLines);
    connect(curveChoice, &QComboBox::activated, this, &Form14::chooseCurve);
    connect(saveButton, &QPushButton::clicked, this, &Form14::save);
    connect(loadButton, &QPushButton::clicked, this, &Form14::load);
    connect(lastButton, &QPushButton::clicked, this,
            [this] { showPoints(readCalibrationText(context_.lastText), {}); });
    connect(applyButton, &QPushButton::clicked, this, &Form14::apply);
    connect(cancelButton, &QPushButton::clicked, this, &Form14::reject);
    lastButton->setEnabled(!context_.lastText.empty());
    matchButton->setEnabled(false);
}

void Form14::recognize() {
    recognized_ = recognizedSource(table_, context_.spectrum.channelCount);
    fillButton->setEnabled(recognized_.has_value());
    recognition->setText(table_.rows.empty() ? tr("No peaks are marked.")
                         : recognized_       ? toWindow(recognitionText(*recognized_))
                                             : tr("The peaks fit no calibration source."));
}

// The row that is looked at stays where it can.
void Form14::showTable() {
    const int row = std::max(peakTable->currentRow(), 0);
    {
        const QSignalBlocker quiet(peakTable);
        peakTable->setRowCount(static_cast<int>(table_.rows.size()));
        for (int i = 0; i < peakTable->rowCount(); ++i) {
            for (int column = 0; column < peakTable->columnCount(); ++column) {
                auto* cell = new QTableWidgetItem;
                cell->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
                if (column != Energy)
                    cell->setFlags(cell->flags() & ~Qt::ItemIsEditable);
                peakTable->setItem(i, column, cell);
            }
        }
        peakTable->setCurrentCell(std::min(row, peakTable->rowCount() - 1), Energy);
    }
    curveChoice->setCurrentIndex(static_cast<int>(table_.curve));
    showFit();
}

void Form14::showFit() {
    fitted_ = fitCalibration(pointsOf(table_), context_.spectrum.channelCount);
    {
        const QSignalBlocker quiet(peakTable);
        for (int row = 0; row < peakTable->rowCount(); ++row)
            showRow(row);
    }
    summary->setText(toWindow(calibrationSummary(fitted_, table_)));
    applyButton->setEnabled(isFitted());
    showResiduals();
}

void Form14::showRow(int row) {
    const CalibrationRow& peak = table_.rows[static_cast<std::size_t>(row)];
    const auto show = [&](Column column, bool there, double value, std::string_view pattern) {
        const std::string text = there ? formatNumber(value, pattern) : std::string();
        peakTable->item(row, column)->setText(toWindow(text));
    };
    const double fitted = energyAt(fitted_.calibration, peak.channel);
    const double energy = peak.energy.value_or(0);
    show(Channel, true, peak.channel, "0.00");
    show(Error, true, peak.channelError, "0.000");
    show(Net, peak.net > 0, peak.net, "0");
    show(Energy, peak.energy.has_value(), energy, "0.00##");
    show(Fitted, isFitted(), fitted, "0.00");
    show(Residual, isFitted() && peak.energy, energy - fitted, "0.000");
    const QString used = peak.isUsed ? tr("yes") : tr("no");
    peakTable->item(row, Used)->setText(peak.energy ? used : QString());
}

void Form14::showResiduals() {
    std::vector<ResidualPoint> points;
    for (std::size_t i = 0; i < table_.rows.size() && isFitted(); ++i) {
        const CalibrationRow& row = table_.rows[i];
        if (!row.energy)
            continue;
        const double slope = fitted_.calibration.b + 2 * fitted_.calibration.c * row.channel;
        points.push_back({.channel = row.channel,
                          .residual = *row.energy - energyAt(fitted_.calibration, row.channel),
                          .error = row.channelError * slope,
                          .isUsed = row.isUsed,
                          .isCurrent = static_cast<int>(i) == peakTable->currentRow()});
    }
    residualPlot->setPoints(std::move(points), context_.spectrum.channelCount);
}

CalibrationRow* Form14::currentRow() {
    const int row = peakTable->currentRow();
    return row < 0 ? nullptr : &table_.rows[static_cast<std::size_t>(row)];
}

// Digits begin an energy wherever the row was touched.
bool Form14::eventFilter(QObject* watched, QEvent* event) {
    if (watched != peakTable || event->type() != QEvent::KeyPress || currentRow() == nullptr)
        return ModalForm::eventFilter(watched, event);
    const auto* key = static_cast<const QKeyEvent*>(event);
    if (key->key() == Qt::Key_Space)
        switchCurrent();
    else if (key->key() == Qt::Key_Delete)
        clearCurrent();
    else if (beginsNumber(*key))
        peakTable->setCurrentCell(peakTable->currentRow(), Energy);
    return key->key() == Qt::Key_Space || key->key() == Qt::Key_Delete;
}

// What is no energy leaves the old one.
void Form14::energyTyped(const QTableWidgetItem* item) {
    CalibrationRow& row = table_.rows[static_cast<std::size_t>(item->row())];
    const std::string text = fromWindow(item->text());
    if (trimBlanks(text).empty())
        row.energy.reset();
    else if (const auto energy = typedEnergy(text))
        row.energy = energy;
    showFit();
}

void Form14::switchCurrent() {
    currentRow()->isUsed = !currentRow()->isUsed;
    showFit();
}

void Form14::clearCurrent() {
    currentRow()->energy.reset();
    showFit();
}

void Form14::fillIn() {
    if (recognized_)
        takePoints(table_, recognized_->points);
    showTable();
}

// What cannot be found is told by a message.
void Form14::findLines() {
    const auto key = keyFromWindowName(fromWindow(nuclideField->text()));
    NuclideData nuclide;
    if (key)
        showNuclideFromDatabase(nuclide, *key, context_.marigoldDir, context_.database,
                                context_.dialogs);
    lines_ = gammaLines(nuclide);
    lineGrid->setRows(lineRows(lines_));
    matchButton->setEnabled(!lines_.empty());
    if (!lines_.empty())
        lineGrid->setFocus();
}

void Form14::giveLine(int row) {
    const auto index = static_cast<std::size_t>(row - 1);
    CalibrationRow* const peak = currentRow();
    if (peak == nullptr || index >= lines_.size())
        return;
    peak->energy = lines_[index].energy;
    peak->isUsed = true;
    showFit();
}

// By the curve, or by what is in force before there is one.
void Form14::matchLines() {
    takeLines(table_, lines_, isFitted() ? fitted_.calibration : context_.spectrum.calCurrent);
    showFit();
}

void Form14::chooseCurve(int index) {
    table_.curve = static_cast<CalibrationCurve>(index);
    showFit();
}

void Form14::showPoints(const ReadPoints& read, const std::string& path) {
    if (!read.refusal.empty())
        context_.dialogs.message({.text = read.refusal, .details = path});
    else
        takePoints(table_, read.points);
    showTable();
}

void Form14::save() {
    const FileChoice choice = context_.dialogs.saveFile(
        {.title = "Save the Calibration",
         .filters = {{fileFilter, "*" + std::string(calibrationFileEnding)}},
         .folder = context_.lastDirectory,
         .fileName = baseName(context_.spectrum) + std::string(calibrationFileEnding)});
    context_.lastDirectory = currentDirectory();
    if (!choice.path.empty())
        saveCalibration(choice.path, pointsOf(table_));
}

void Form14::load() {
    const FileChoice choice = context_.dialogs.openFile(
        {.title = "Load a Calibration",
         .filters = {{fileFilter, "*" + std::string(calibrationFileEnding)}},
         .folder = context_.lastDirectory});
    context_.lastDirectory = currentDirectory();
    if (!choice.path.empty())
        showPoints(loadCalibration(choice.path), choice.path);
}

void Form14::apply() {
    keepCalibration(fitted_.calibration, context_.spectrum, context_.calibrationChoice);
    context_.lastText = calibrationText(pointsOf(table_));
    accept();
}

}  // namespace kestrel
