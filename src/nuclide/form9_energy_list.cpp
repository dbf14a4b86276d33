#include "nuclide/form9_energy_list.h"

#include <algorithm>

#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/virtual_key.h"
#include "nuclide/nuclide_key.h"
#include "ui/find_row.h"
#include "ui/number_field.h"
#include "ui/placement.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int listTab = 0;

QString numbered(const char* name, int number) {
    return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(number);
}

std::vector<GridRow> gridRows(const EnergyList& list) {
    std::vector<GridRow> rows;
    rows.reserve(list.rows.size());
    for (const EnergyRow& line : list.rows) {
        GridRow& row = rows.emplace_back();
        for (std::size_t column = 1; column < EnergyRow::columns; ++column)
            row.push_back({line.text.at(column), line.colour.at(column)});
        row.at(halfLifeColumn - 1).value = line.halfLife;
    }
    if (list.nearest > 0)
        rows.at(static_cast<std::size_t>(list.nearest) - 1).front().marked = true;
    return rows;
}

template <std::size_t N>
int chosen(const std::array<QRadioButton*, N>& options) {
    const auto* it = std::ranges::find_if(options, &QRadioButton::isChecked);
    return it == options.end() ? 0 : static_cast<int>(it - options.begin());
}

}  // namespace

Form9::Form9(EnergyListContext context, QWidget* parent)
    : QWidget(parent, Qt::Window),
      tabs(new QTabWidget(this)),
      lineGrid(new Grid(context.palette, this)),
      databaseDate(new QLineEdit(this)),
      findField(new QLineEdit(this)),
      cursorEnergy_(new QLabel(this)),
      hiddenLines_(new QLabel(this)),
      context_(std::move(context)) {
    setObjectName(QStringLiteral("Form9"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Kestrel - EnergyList"));
    tabs->setObjectName(QStringLiteral("SSTab1"));
    tabs->setAccessibleName(tr("List and Gate"));
    buildListTab();
    buildGateTab();
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(tabs);
    resize(760, 480);
    if (context_.placement.width > narrowestPlacement)
        place(*this, context_.placement);
    tabs->setCurrentIndex(listTab);
    showList();
    resetGate();
    connect(tabs, &QTabWidget::currentChanged, this, &Form9::tabChosen);
}

void Form9::buildListTab() {
    databaseDate->setObjectName(QStringLiteral("Text1"));
    databaseDate->setReadOnly(true);
    databaseDate->setFocusPolicy(Qt::ClickFocus);
    databaseDate->setAccessibleName(tr("Date of the database"));
    lineGrid->setObjectName(QStringLiteral("MSFlexGrid1"));
    lineGrid->setAccessibleName(tr("Lines near the cursor"));
    auto* page = new QWidget(this);
    auto* column = new QVBoxLayout(page);
    column->addWidget(databaseDate);
    column->addWidget(lineGrid, 1);
    for (QLabel* label : {cursorEnergy_, hiddenLines_})
        label->setTextFormat(Qt::PlainText);
    cursorEnergy_->setObjectName(QStringLiteral("cursorEnergy"));
    hiddenLines_->setObjectName(QStringLiteral("hiddenLines"));
    auto* below = new QHBoxLayout;
    below->addWidget(cursorEnergy_);
    below->addStretch();
    below->addWidget(hiddenLines_);
    column->addLayout(below);
    column->addLayout(findRow(
        *findField,
        "&Find nuclide:", "Go to a nuclide of the list, such as cs137 (Alt+F; Enter: the next)"));
    tabs->addTab(page, QStringLiteral("&EngList"));
    connect(lineGrid, &Grid::rowPicked, this, &Form9::pickRow);
    connect(lineGrid, &Grid::keyDown, this, &Form9::gridKeyDown);
    connect(findField, &QLineEdit::textEdited, this, [this] { findNuclide(0); });
    connect(findField, &QLineEdit::returnPressed, this, [this] { findNuclide(1); });
}

void Form9::buildGateTab() {
    auto* page = new QWidget(this);
    auto* grid = new QGridLayout(page);
    grid->addWidget(entryFrame("EngyAmbig", {9}, "+-(keV)"), 0, 0);
    grid->addWidget(entryFrame("B.Ratio", {0, 1}, ">BR(%)>"), 1, 0);
    grid->addWidget(entryFrame("HLife(sec)", {2, 3}, ">HR(s)"), 2, 0);
    grid->addWidget(entryFrame("A", {4, 5}, ""), 3, 0);
    grid->addWidget(entryFrame("Z", {6, 7}, ""), 4, 0);
    static constexpr std::array radiations = {"gamma ray", "beta max", "beta+ max", "alpha",
                                              "Cnv/Aug Elc"};
    static constexpr std::array decays = {"All", "B-", "EC,B+", "IT", "alpha"};
    grid->addWidget(optionFrame("EngList of", "Option2", radiations, radiationOptions), 0, 1, 5, 1);
    grid->addWidget(optionFrame("with DcyMode of", "Option1", decays, decayOptions), 0, 2, 5, 1);
    auto* reset = new QPushButton(tr("&Defaults"), page);
    connect(reset, &QPushButton::clicked, this, &Form9::resetGate);
    grid->addWidget(reset, 5, 0);
    grid->setRowStretch(6, 1);
    tabs->addTab(page, QStringLiteral("&Gate"));
}

QWidget* Form9::entryFrame(const char* caption, std::initializer_list<int> entries,
                           const char* unit) {
    auto* frame = new QGroupBox(QString::fromLatin1(caption), this);
    auto* row = new QHBoxLayout(frame);
    for (const int number : entries) {
        auto* entry = new QLineEdit(frame);
        entry->setObjectName(numbered("Text2", number));
        takeNumbers(*entry);
        entry->setAccessibleName(QStringLiteral("%1 %2").arg(
            QString::fromLatin1(caption), number % 2 == 0 ? tr("lowest") : tr("highest")));
        row->addWidget(entry);
        gateFields.at(static_cast<std::size_t>(number)) = entry;
    }
    auto* label = new QLabel(QString::fromLatin1(unit), frame);
    label->setObjectName(QStringLiteral("Label1"));
    row->addWidget(label);
    return frame;
}

template <std::size_t N>
QWidget* Form9::optionFrame(const char* caption, const char* name,
                            const std::array<const char*, N>& captions,
                            std::array<QRadioButton*, N>& options) {
    auto* frame = new QGroupBox(QString::fromLatin1(caption), this);
    auto* column = new QVBoxLayout(frame);
    for (std::size_t i = 0; i < N; ++i) {
        options.at(i) = new QRadioButton(QString::fromLatin1(captions.at(i)), frame);
        options.at(i)->setObjectName(numbered(name, static_cast<int>(i)));
        column->addWidget(options.at(i));
    }
    column->addStretch(1);
    return frame;
}

void Form9::resetGate() {
    const EnergyEntries defaults;
    for (std::size_t i = 0; i < gateFields.size(); ++i) {
        if (gateFields.at(i) != nullptr)
            gateFields.at(i)->setText(toWindow(defaults.text.at(i)));
    }
    decayOptions[0]->setChecked(true);
    radiationOptions[0]->setChecked(true);
}

EnergyEntries Form9::entries() const {
    EnergyEntries result;
    for (std::size_t i = 0; i < gateFields.size(); ++i) {
        if (gateFields.at(i) != nullptr)
            result.text.at(i) = fromWindow(gateFields.at(i)->text());
    }
    result.decayClass = chosen(decayOptions);
    result.radiationClass = chosen(radiationOptions);
    return result;
}

// Queued, since a message may follow, which is no work for an activation event.
void Form9::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        QMetaObject::invokeMethod(this, &Form9::activated, Qt::QueuedConnection);
}

void Form9::activated() {
    tabs->setCurrentIndex(listTab);
    refreshList();
}

void Form9::tabChosen(int tab) {
    if (tab != listTab)
        return;
    state_.forceRefresh = true;
    refreshList();
}

void Form9::refreshList() {
    const EnergyEntries typed = entries();
    if (refreshEnergyList(state_,
                          {context_.cursorCh, context_.calibration, typed, context_.marigoldDir},
                          context_.database, context_.dialogs))
        showList();
}

void Form9::showList() {
    const EnergyList& list = state_.list;
    databaseDate->setText(toWindow(state_.updateText));
    cursorEnergy_->setText(toWindow(cursorText(list)));
    hiddenLines_->setText(toWindow(hiddenLinesText(list)));
    lineGrid->setFormat(list.format);
    lineGrid->setRows(gridRows(list));
    if (list.current == 0)
        return;
    lineGrid->goTo(list.current, static_cast<int>(nuclideColumn), list.firstVisible);
    lineGrid->setFocus();
}

void Form9::pickRow(int row) {
    const auto index = static_cast<std::size_t>(row - 1);
    const std::string key =
        index < state_.list.rows.size() ? nuclideOfRow(state_.list.rows[index]) : std::string();
    if (key.empty())
        return;
    context_.selectNuclide(key);
    context_.windows.showNuclideData();
}

void Form9::findNuclide(int rowsOn) {
    const std::vector<EnergyRow>& rows = state_.list.rows;
    const int count = static_cast<int>(rows.size());
    const int from = std::max(lineGrid->currentRow() - 1, 0) + rowsOn;
    const std::string typed = fromWindow(findField->text());
    for (int i = 0; i < count && !typed.empty(); ++i) {
        const int row = (from + i) % count;
        if (!beginsWith(rows[static_cast<std::size_t>(row)].text[nuclideColumn], typed))
            continue;
        return lineGrid->goTo(row + 1, static_cast<int>(nuclideColumn), row + 1);
    }
}

void Form9::gridKeyDown(int keyCode) {
    if (keyCode == 'N' || keyCode == virtual_key::f11)
        pickRow(lineGrid->currentRow());
    else if (keyCode == 'X' || keyCode == virtual_key::f10)
        context_.windows.showMainWindow();
}

void Form9::closeEvent(QCloseEvent* event) {
    context_.placement = placementOf(*this);
    context_.database.close();
    QWidget::closeEvent(event);
}

void Form9::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
