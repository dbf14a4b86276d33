#include "peaks/form13_peaks.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "base/integers.h"
#include "base/virtual_key.h"
#include "peaks/peak_list_file.h"
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

}  // namespace

PeaksWindow::PeaksWindow(PeaksContext context, QWidget* parent)
    : QWidget(parent, Qt::Window),
      peakGrid(new Grid(context.palette, this)),
      details(new QLabel(this)),
      remark(new QLabel(this)),
      saveButton(new QPushButton(tr("&Save as CSV..."), this)),
      context_(std::move(context)) {
    setObjectName(QStringLiteral("peaksWindow"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Kestrel - Peaks"));
    placeControls();
    connectControls();
    resize(900, 520);
    if (context_.placement.width > narrowestPlacement)
        place(*this, context_.placement);
}

void PeaksWindow::placeControls() {
    peakGrid->setObjectName(QStringLiteral("peaks"));
    peakGrid->setAccessibleName(tr("Peaks of the spectrum"));
    const std::vector<PeakColumn> columns = shownPeakColumns();
    peakGrid->setFormat(formatOf(columns));
    peakGrid->setToolTips(explanationsOf(columns));
    for (QLabel* label : {details, remark}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
    }
    details->setObjectName(QStringLiteral("details"));
    remark->setObjectName(QStringLiteral("remark"));
    saveButton->setObjectName(QStringLiteral("save"));
    saveButton->setToolTip(tr("Save all peaks as a table (Alt+S)"));
    auto* below = new QHBoxLayout;
    below->addWidget(remark, 1);
    below->addWidget(saveButton);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->addWidget(peakGrid, 1);
    column->addWidget(details);
    column->addLayout(below);
    peakGrid->setFocus();
}

void PeaksWindow::connectControls() {
    connect(peakGrid, &Grid::rowPicked, this, &PeaksWindow::pickRow);
    connect(peakGrid, &Grid::keyDown, this, &PeaksWindow::gridKeyDown);
    connect(peakGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PeaksWindow::showDetails);
    connect(saveButton, &QPushButton::clicked, this, &PeaksWindow::save);
}

void PeaksWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    follow();
}

// Queued: a fault of the measurement is none of the drawing. What has been tried is not tried
// again.
void PeaksWindow::follow() {
    if (!isVisible() || (listed_ && *listed_ == context_.spectrum))
        return;
    listed_ = std::make_unique<Spectrum>(context_.spectrum);
    QMetaObject::invokeMethod(this, &PeaksWindow::listPeaks, Qt::QueuedConnection);
}

void PeaksWindow::listPeaks() {
    list_ = {};
    peakGrid->setRows({});
    list_ = kestrel::listPeaks(context_.spectrum, context_.derived);
    peakGrid->setRows(gridRows(list_, shownPeakColumns()));
    remark->setText(toWindow(remarkOn(list_)));
    goToCursor();
    showDetails();
}

// The peak nearest to the cursor, with some of those before it.
void PeaksWindow::goToCursor() {
    constexpr int before = 3;
    const auto nearest = std::ranges::min_element(list_.peaks, {}, [this](const ListedPeak& peak) {
        return std::abs(peak.measured.centroid - context_.cursorCh);
    });
    if (nearest == list_.peaks.end())
        return;
    const int row = static_cast<int>(nearest - list_.peaks.begin()) + 1;
    peakGrid->goTo(row, 1, std::max(row - before, 1));
}

const ListedPeak* PeaksWindow::currentPeak() const {
    const auto row = static_cast<std::size_t>(peakGrid->currentRow());
    return row == 0 || row > list_.peaks.size() ? nullptr : &list_.peaks[row - 1];
}

void PeaksWindow::showDetails() {
    const ListedPeak* const peak = currentPeak();
    details->setText(peak == nullptr ? QString() : toWindow(peakDetails(*peak)));
}

// The keys stay here, so that one peak after the other can be looked at.
void PeaksWindow::pickRow(int row) {
    const auto index = static_cast<std::size_t>(row - 1);
    if (index < list_.peaks.size())
        context_.moveCursor(toInt32(list_.peaks[index].measured.centroid));
}

void PeaksWindow::gridKeyDown(int keyCode) {
    if (keyCode == 'X' || keyCode == virtual_key::f10)
        context_.windows.showMainWindow();
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
