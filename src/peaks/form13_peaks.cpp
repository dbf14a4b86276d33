#include "peaks/form13_peaks.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QSplitter>
#include <QVBoxLayout>

#include "base/integers.h"
#include "base/runtime_fault.h"
#include "base/virtual_key.h"
#include "peaks/peak_list_file.h"
#include "spectrum/energy_calibration.h"
#include "ui/placement.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

std::string formatOf(const std::vector<PeakColumn>& columns) {
    std::string format = "> ";
    for (const PeakColumn& column : columns)
        format.append("|").append(column.heading);
    return format;
}

std::vector<std::string_view> explanationsOf(const std::vector<PeakColumn>& columns) {
    std::vector<std::string_view> texts(columns.size());
    std::ranges::transform(columns, texts.begin(), &PeakColumn::explanation);
    return texts;
}

std::vector<GridRow> gridRows(const PeakList& list, const std::vector<PeakColumn>& columns) {
    std::vector<GridRow> rows;
    rows.reserve(list.peaks.size());
    for (const ListedPeak& peak : list.peaks) {
        GridRow& row = rows.emplace_back();
        for (const PeakColumn& column : columns)
            row.push_back({column.text(peak)});
    }
    return rows;
}

template <typename Texts>
GridRow gridRow(const Texts& texts) {
    GridRow row;
    for (const std::string& text : texts)
        row.push_back({text});
    return row;
}

std::vector<GridRow> candidateRows(const PeakCandidates& found) {
    std::vector<GridRow> rows;
    for (const Candidate& candidate : found.candidates) {
        GridRow& row = rows.emplace_back(gridRow(candidateTexts(candidate)));
        row[candidateHalfLifeColumn].value = candidate.seconds;
    }
    return rows;
}

// With some of the rows before it.
void goToRow(Grid& grid, int row) {
    constexpr int before = 3;
    grid.goTo(row, 1, std::max(row - before, 1));
}

QString sentences(std::initializer_list<std::string> texts) {
    QStringList said;
    for (const std::string& text : texts) {
        if (!text.empty())
            said += toSigns(text);
    }
    return said.join(QLatin1Char(' '));
}

}  // namespace

PeaksWindow::PeaksWindow(PeaksContext context, QWidget* parent)
    : QWidget(parent, Qt::Window),
      peakGrid(new Grid(context.palette, this)),
      candidateGrid(new Grid(context.palette, this)),
      lineGrid(new Grid(context.palette, this)),
      details(new QLabel(this)),
      remark(new QLabel(this)),
      saveButton(new QPushButton(tr("&Save as CSV..."), this)),
      context_(std::move(context)) {
    setObjectName(QStringLiteral("peaksWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Kestrel - Peaks"));
    placeControls();
    connectControls();
    resize(940, 640);
    if (context_.placement.width > narrowestPlacement)
        place(*this, context_.placement);
}

void PeaksWindow::placeControls() {
    peakGrid->setObjectName(QStringLiteral("peaks"));
    peakGrid->setAccessibleName(tr("Peaks of the spectrum"));
    showColumns();
    candidateGrid->setObjectName(QStringLiteral("candidates"));
    candidateGrid->setAccessibleName(tr("Candidates"));
    candidateGrid->setFormat(candidateFormat);
    candidateGrid->setToolTips(candidateExplanations());
    lineGrid->setObjectName(QStringLiteral("lines"));
    lineGrid->setAccessibleName(tr("Strong lines of the candidate"));
    lineGrid->setFormat(candidateLineFormat);
    auto* candidates = new QSplitter(Qt::Horizontal, this);
    candidates->addWidget(candidateGrid);
    candidates->addWidget(lineGrid);
    candidates->setSizes({430, 340});
    auto* grids = new QSplitter(Qt::Vertical, this);
    grids->addWidget(peakGrid);
    grids->addWidget(candidates);
    grids->setStretchFactor(0, 3);
    grids->setStretchFactor(1, 2);
    for (QSplitter* splitter : {candidates, grids})
        splitter->setChildrenCollapsible(false);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->addWidget(grids, 1);
    column->addLayout(belowGrids());
    peakGrid->setFocus();
}

QLayout* PeaksWindow::belowGrids() {
    for (QLabel* label : {details, remark}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    details->setObjectName(QStringLiteral("details"));
    remark->setObjectName(QStringLiteral("remark"));
    saveButton->setObjectName(QStringLiteral("save"));
    saveButton->setToolTip(tr("Save all peaks as a table (Alt+S)"));
    auto* texts = new QVBoxLayout;
    texts->addWidget(details);
    texts->addWidget(remark);
    auto* row = new QHBoxLayout;
    row->addLayout(texts, 1);
    row->addWidget(saveButton, 0, Qt::AlignBottom);
    return row;
}

void PeaksWindow::showColumns() {
    const std::vector<PeakColumn> columns = shownPeakColumns(list_.compared);
    peakGrid->setFormat(formatOf(columns));
    peakGrid->setToolTips(explanationsOf(columns));
}

void PeaksWindow::connectControls() {
    connect(peakGrid, &Grid::rowPicked, this, &PeaksWindow::pickPeak);
    connect(lineGrid, &Grid::rowPicked, this, &PeaksWindow::pickLine);
    connect(candidateGrid, &Grid::doubleClicked, this, &PeaksWindow::showNuclide);
    for (const Grid* grid : {peakGrid, candidateGrid, lineGrid})
        connect(grid, &Grid::keyDown, this, &PeaksWindow::gridKeyDown);
    connect(peakGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PeaksWindow::showPeak);
    connect(candidateGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PeaksWindow::showLines);
    connect(saveButton, &QPushButton::clicked, this, &PeaksWindow::save);
}

void PeaksWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    follow();
}

void PeaksWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        follow();
}

PeaksWindow::Basis PeaksWindow::basis() const {
    const Spectrum& spectrum = context_.spectrum;
    return {.counts = spectrum.counts,
            .channelCount = spectrum.channelCount,
            .liveTime = spectrum.openedLiveTime,
            .calibration = knownCalibration(spectrum),
            .filters = context_.filters(),
            .marigoldDir = context_.marigoldDir};
}

// Queued: a fault of the measurement is none of the drawing. What has been tried is not tried
// again.
void PeaksWindow::follow() {
    if (!isVisible())
        return;
    std::optional<SecondCounts> second = context_.second();
    auto now = std::make_unique<Basis>(basis());
    const bool upToDate = basis_ && *basis_ == *now;
    if (upToDate && second == second_)
        return;
    second_ = std::move(second);
    basis_ = std::move(now);
    const auto work = upToDate ? &PeaksWindow::compare : &PeaksWindow::listPeaks;
    QMetaObject::invokeMethod(this, work, Qt::QueuedConnection);
}

void PeaksWindow::listPeaks() {
    list_ = {};
    found_ = {};
    for (Grid* grid : {peakGrid, candidateGrid, lineGrid})
        grid->setRows({});
    list_ = kestrel::listPeaks(context_.spectrum, context_.derived);
    const std::string failure = findCandidates();
    showRows();
    candidateGrid->setRows(candidateRows(found_));
    remark->setText(sentences({remarkOn(list_), shiftText(found_), failure}));
    goToCursor();
    showPeak();
}

// The peaks stay, and the one that is looked at.
void PeaksWindow::compare() {
    const int row = peakGrid->currentRow();
    showRows();
    goToRow(*peakGrid, row);
}

void PeaksWindow::showRows() {
    list_.compared = second_.has_value();
    if (second_)
        addSecondAreas(list_, *second_);
    showColumns();
    peakGrid->setRows(gridRows(list_, shownPeakColumns(list_.compared)));
}

// Why there are none; empty where that is no failure.
std::string PeaksWindow::findCandidates() {
    if (!list_.calibrated || list_.peaks.empty())
        return {};
    try {
        found_ = findPeakCandidates(
            list_, context_.spectrum,
            library_.read(context_.database, context_.marigoldDir, context_.filters()));
    } catch (const DatabaseError& error) {
        return "No candidates: " + std::string(error.what());
    } catch (const RuntimeFault&) {
        return "No candidates: a number of the database is too large";
    }
    nameCandidates(found_, list_);
    return {};
}

// The peak nearest to the cursor.
void PeaksWindow::goToCursor() {
    const auto nearest = std::ranges::min_element(list_.peaks, {}, [this](const ListedPeak& peak) {
        return std::abs(peak.measured.centroid - context_.cursorCh);
    });
    if (nearest == list_.peaks.end())
        return;
    goToRow(*peakGrid, static_cast<int>(nearest - list_.peaks.begin()) + 1);
}

const ListedPeak* PeaksWindow::currentPeak() const {
    const auto row = static_cast<std::size_t>(peakGrid->currentRow());
    return row == 0 || row > list_.peaks.size() ? nullptr : &list_.peaks[row - 1];
}

const Candidate* PeaksWindow::currentCandidate() const {
    const auto row = static_cast<std::size_t>(candidateGrid->currentRow());
    return row == 0 || row > found_.candidates.size() ? nullptr : &found_.candidates[row - 1];
}

// With the first of its candidates.
void PeaksWindow::showPeak() {
    const ListedPeak* const peak = currentPeak();
    details->setText(peak == nullptr ? QString() : toWindow(peakDetails(*peak)));
    const auto place = static_cast<std::size_t>(peakGrid->currentRow() - 1);
    if (peak == nullptr || place >= found_.candidatesOfPeak.size())
        return;
    const std::vector<std::size_t>& candidates = found_.candidatesOfPeak[place];
    if (!candidates.empty())
        goToRow(*candidateGrid, static_cast<int>(candidates.front()) + 1);
}

void PeaksWindow::showLines() {
    std::vector<GridRow> rows;
    if (const Candidate* const candidate = currentCandidate()) {
        for (const CandidateLine& line : candidate->lines)
            rows.push_back(gridRow(candidateLineTexts(line, found_.peaks)));
    }
    lineGrid->setRows(std::move(rows));
}

// The keys stay here, so that one peak after the other can be looked at.
void PeaksWindow::pickPeak(int row) {
    const auto index = static_cast<std::size_t>(row - 1);
    if (index < list_.peaks.size())
        context_.moveCursor(toInt32(list_.peaks[index].measured.centroid));
}

void PeaksWindow::pickLine(int row) {
    const Candidate* const candidate = currentCandidate();
    const auto index = static_cast<std::size_t>(row - 1);
    if (candidate != nullptr && index < candidate->lines.size())
        context_.moveCursor(
            energyToChannel(context_.spectrum.calCurrent,
                            double{candidate->lines[index].line.energy} - found_.shift));
}

void PeaksWindow::gridKeyDown(int keyCode) {
    if (keyCode == 'X' || keyCode == virtual_key::f10)
        context_.windows.showMainWindow();
    else if (keyCode == 'N' || keyCode == virtual_key::f11)
        showNuclide();
}

void PeaksWindow::showNuclide() {
    if (const Candidate* const candidate = currentCandidate())
        context_.showNuclide(candidate->nuclide);
}

void PeaksWindow::save() {
    savePeakList(list_, context_.spectrum, context_.lastDirectory, context_.dialogs);
}

void PeaksWindow::closeEvent(QCloseEvent* event) {
    context_.placement = placementOf(*this);
    QWidget::closeEvent(event);
}

void PeaksWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
