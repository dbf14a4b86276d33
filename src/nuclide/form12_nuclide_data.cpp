#include "nuclide/form12_nuclide_data.h"

#include <algorithm>
#include <initializer_list>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QVBoxLayout>

#include "base/virtual_key.h"
#include "nuclide/nuclide_key.h"
#include "ui/find_row.h"
#include "ui/placement.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int summaryLines = 3;

struct KindChoice {
    const char* caption = "";
    std::initializer_list<LineKind> kinds = {};  // none: all
};
const KindChoice kindChoices[] = {
    {"All lines", {}},
    {"Gamma and X-ray", {LineKind::Gamma, LineKind::XRay}},
    {"Gamma", {LineKind::Gamma}},
    {"X-ray", {LineKind::XRay}},
    {"Electron", {LineKind::Electron}},
    {"Beta", {LineKind::Beta}},
};

}  // namespace

Form12::Form12(NuclideDataContext context, QWidget* parent)
    : QWidget(parent, Qt::Window),
      summary(new TextList(this)),
      databaseDate(new QLineEdit(this)),
      lineGrid(new Grid(context.palette, this)),
      kindChoice(new QComboBox(this)),
      findField(new QLineEdit(this)),
      context_(context) {
    setObjectName(QStringLiteral("Form12"));
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Kestrel - NuclData"));
    context_.data = {};
    placeControls();
    resize(460, 560);
    if (context_.placement.width > narrowestPlacement)
        place(*this, context_.placement);
    showData();
    connect(lineGrid, &Grid::keyDown, this, &Form12::gridKeyDown);
    connect(kindChoice, &QComboBox::currentIndexChanged, this, &Form12::showLines);
    connect(findField, &QLineEdit::returnPressed, this, &Form12::findNuclide);
}

void Form12::placeControls() {
    summary->setObjectName(QStringLiteral("List1"));
    summary->setAccessibleName(tr("Half-life and decay modes"));
    summary->setFixedHeight(summary->fontMetrics().height() * summaryLines + 4 * summaryLines + 8);
    databaseDate->setObjectName(QStringLiteral("Text1"));
    databaseDate->setReadOnly(true);
    databaseDate->setFocusPolicy(Qt::ClickFocus);
    databaseDate->setAccessibleName(tr("Date of the data"));
    lineGrid->setObjectName(QStringLiteral("MSFlexGrid1"));
    lineGrid->setAccessibleName(tr("Lines of the nuclide"));
    auto* menu = new QMenuBar(this);
    QAction* nuc1 = menu->addAction(QStringLiteral("&Nuclide"));
    nuc1->setObjectName(QStringLiteral("nuc1"));
    connect(nuc1, &QAction::triggered, this, &Form12::askNuclide);
    QAction* mark = menu->addAction(tr("&Mark or Unmark"), this,
                                    [this] { context_.windows.switchMarkedNuclide(); });
    mark->setObjectName(QStringLiteral("mark"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(6, 6, 6, 6);
    column->setMenuBar(menu);
    column->addWidget(summary);
    column->addWidget(databaseDate);
    column->addWidget(lineGrid, 1);
    column->addLayout(choiceRow());
    lineGrid->setFocus();
}

QLayout* Form12::choiceRow() {
    kindChoice->setObjectName(QStringLiteral("kind"));
    kindChoice->setAccessibleName(tr("Lines that are listed"));
    kindChoice->setToolTip(tr("Lines that are listed (Alt+L); the marks on the plot stay"));
    for (const KindChoice& choice : kindChoices)
        kindChoice->addItem(QString::fromLatin1(choice.caption));
    auto* label = new QLabel(tr("&List:"), this);
    label->setBuddy(kindChoice);
    auto* row =
        findRow(*findField, "&Find nuclide:", "Show a nuclide, such as cs137 (Alt+F, then Enter)");
    row->insertWidget(0, kindChoice);
    row->insertWidget(0, label);
    return row;
}

void Form12::askNuclide() {
    const std::optional<std::string> key = askNuclideKey(keyFromWindowName, context_.dialogs);
    if (key)
        choose(*key);
}

void Form12::findNuclide() {
    if (const auto key = keyFromWindowName(fromWindow(findField->text())))
        choose(*key);
}

void Form12::choose(const std::string& key) {
    context_.selectedNuclide = key;
    context_.data.forgetFailure();
    ShowNuclideFromDatabase();
}

void Form12::ShowNuclideFromDatabase() {
    showNuclideFromDatabase(context_.data, context_.selectedNuclide, context_.marigoldDir,
                            context_.database, context_.dialogs, [this] { showData(); });
}

void Form12::showData() {
    const NuclideData& shown = context_.data;
    summary->clear();
    for (const std::string& line : shown.summary)
        summary->addItem(toSigns(line));
    databaseDate->setText(toWindow(shown.updateText));
    databaseDate->setToolTip(
        shown.source.empty() ? QString() : QStringLiteral("Gamma lines: ") + toSigns(shown.source));
    lineGrid->setFormat(nuclideListFormat);
    showLines();
}

bool Form12::isShown(const NuclideRow& line) const {
    const KindChoice& choice = kindChoices[kindChoice->currentIndex()];
    return choice.kinds.size() == 0 ||
           std::ranges::find(choice.kinds, kindOf(line)) != choice.kinds.end();
}

void Form12::showLines() {
    std::vector<GridRow> rows;
    for (const NuclideRow& line : context_.data.rows) {
        if (isShown(line))
            rows.push_back(
                {{line.energy}, {line.intensity, line.intensityColour}, {line.definition}});
    }
    lineGrid->setRows(std::move(rows));
    lineGrid->goTo(1, 1, 1);
}

void Form12::gridKeyDown(int keyCode) {
    if (keyCode == 'N' || keyCode == virtual_key::f11)
        context_.windows.showEnergyList();
    else if (keyCode == 'X' || keyCode == virtual_key::f10)
        context_.windows.showMainWindow();
}

// Queued, since a message may follow, which is no work for an activation event.
void Form12::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        QMetaObject::invokeMethod(this, &Form12::ShowNuclideFromDatabase, Qt::QueuedConnection);
}

// A closed window lists nothing any more, so its nuclide has no marks on the plot either.
void Form12::closeEvent(QCloseEvent* event) {
    context_.placement = placementOf(*this);
    context_.data = {};
    QWidget::closeEvent(event);
}

void Form12::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
