#include "analysis/form7_peak_area.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScreen>

#include "ui/modal_form.h"
#include "ui/placement.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int boundColumns = 6;
constexpr int sumColumns = 10;
constexpr int resultColumns = 24;  // "-1.2345E+05 +- 1.234E+02"
constexpr int remarkColumns = 24;

}  // namespace

Form7::Form7(const PeakAreaWork& work, const RegionSource& source, WindowPlacement& placement,
             std::function<void()> showResults, QWidget* parent)
    : QWidget(parent, Qt::Dialog),
      lowBackgroundFrom(
          fixedPitchField(this, "Text1", boundColumns, "Low background, low channel")),
      lowBackgroundTo(fixedPitchField(this, "Text2", boundColumns, "Low background, high channel")),
      peakFrom(fixedPitchField(this, "Text3", boundColumns, "Peak, low channel")),
      peakTo(fixedPitchField(this, "Text4", boundColumns, "Peak, high channel")),
      highBackgroundFrom(
          fixedPitchField(this, "Text5", boundColumns, "High background, low channel")),
      highBackgroundTo(
          fixedPitchField(this, "Text6", boundColumns, "High background, high channel")),
      netArea(result("Text7", resultColumns, "Net area and error")),
      countRate(result("Text8", resultColumns, "Counts per second and error")),
      setNumber(result("Text9", 4, "Number of the data set")),
      relativeError(result("Text10", 9, "Relative error in per cent")),
      remark(fixedPitchField(this, "Text11", remarkColumns, "Remark")),
      lowBackgroundSum(result("Text12", sumColumns, "Sum of the low background")),
      peakSum(result("Text13", sumColumns, "Sum of the peak")),
      highBackgroundSum(result("Text14", sumColumns, "Sum of the high background")),
      previousButton(button("Command1", "&<", "Previous data set")),
      nextButton(button("Command2", "&>", "Next data set")),
      clearButton(button("Command3", "&Clear", "Clear this data set")),
      centroid(result("centroid", resultColumns, "Centroid of the peak")),
      fwhm(result("fwhm", resultColumns, "Full width at half maximum of the peak")),
      autoButton(button("auto", "&Auto", "Regions of the peak nearest to the cursor")),
      allPeaksButton(button("allPeaks", "A&ll Peaks", "A data set for each marked peak")),
      undoButton(button("undo", "&Undo", "Take the last change back")),
      loadButton(button("load", "Loa&d...", "Regions of a saved list")),
      work_(work),
      source_(source),
      fields_(work.state.fields),
      placement_(placement),
      showResults_(std::move(showResults)) {
    setObjectName(QStringLiteral("Form7"));
    setWindowTitle(QStringLiteral("pkArea"));
    // The keys stay with the plot, which enters the bounds.
    setAttribute(Qt::WA_ShowWithoutActivating);
    placeControls();
    setTabOrders();
    connectControls();
    adjustSize();
    if (placement_.width > narrowestPlacement)
        place(*this, placement_);
    else
        moveBeside(*parent);
}

// A field that loses the keys while the window goes would still tell it.
Form7::~Form7() {
    for (const QLineEdit* field : findChildren<QLineEdit*>())
        field->disconnect(this);
}

// Right of the main window as far as the screen allows, so that little of the plot is covered.
void Form7::moveBeside(const QWidget& main) {
    const QRect screen = main.screen()->availableGeometry();
    const int rightmost = screen.right() - frameSize().width();
    move(std::max(std::min(main.frameGeometry().right() + 1, rightmost), screen.left()),
         main.geometry().top());
}

template <typename Operation>
auto Form7::run(Operation operation) {
    struct AtTheEnd {
        Form7& form;
        ~AtTheEnd() { form.showFields(); }
    };
    const AtTheEnd show{*this};
    return operation();
}

void Form7::showSet(std::int16_t set) {
    work_.state.currentSet = set;
    focusBound(1);
    fields_.bounds.shown = true;
    show();
    run([this] { showDataSet(work_); });
    emit regionsChanged();
}

void Form7::enterCursorChannel(std::int16_t cursorCh) {
    history_.keep(work_);
    run([&] { kestrel::enterCursorChannel(work_, cursorCh, [this] { showEntered(); }); });
}

void Form7::enterRange(std::int16_t from, std::int16_t to) {
    history_.keep(work_);
    run([&] { kestrel::enterRange(work_, from, to, [this] { showEntered(); }); });
}

int Form7::middleOfPeak() const {
    return kestrel::middleOfPeak(work_);
}

void Form7::showEntered() {
    showFields();
    focusBound(work_.state.focusedField);
    emit regionsChanged();
}

void Form7::showPrevious() {
    if (run([this] { return previousDataSet(work_); }))
        focusBound(1);
    emit setsChanged();
    emit regionsChanged();
}

void Form7::showNext() {
    if (run([this] { return nextDataSet(work_); }))
        focusBound(1);
    emit setsChanged();
    emit regionsChanged();
}

void Form7::clearSet() {
    history_.keep(work_);
    if (!run([this] { return clearDataSet(work_); }))
        return undo();
    emit setsChanged();
    emit regionsChanged();
}

void Form7::fill(bool (*operation)(const PeakAreaWork& work, const RegionSource& source)) {
    history_.keep(work_);
    if (!run([&] { return operation(work_, source_); }))
        return undo();
    focusBound(1);
    emit setsChanged();
    emit regionsChanged();
}

void Form7::undo() {
    typing_ = false;
    run([this] { history_.back(work_); });
    emit setsChanged();
    emit regionsChanged();
}

// Once for all that is typed into a field.
void Form7::keepBeforeTyping() {
    if (!std::exchange(typing_, true))
        history_.keep(work_);
}

void Form7::showOutput() {
    showResults_();
}

void Form7::showFields() {
    const std::pair<QLineEdit*, const std::string*> contents[] = {
        {lowBackgroundFrom, &fields_.bounds.texts[0]},
        {lowBackgroundTo, &fields_.bounds.texts[1]},
        {peakFrom, &fields_.bounds.texts[2]},
        {peakTo, &fields_.bounds.texts[3]},
        {highBackgroundFrom, &fields_.bounds.texts[4]},
        {highBackgroundTo, &fields_.bounds.texts[5]},
        {netArea, &fields_.net},
        {countRate, &fields_.cps},
        {setNumber, &fields_.index},
        {relativeError, &fields_.relativeError},
        {remark, &fields_.remark},
        {lowBackgroundSum, &fields_.sums[0]},
        {peakSum, &fields_.sums[1]},
        {highBackgroundSum, &fields_.sums[2]},
    };
    showPeak();
    for (const auto& [field, text] : contents) {
        const QString shown = toWindow(*text);
        if (field->text() != shown)
            field->setText(shown);
    }
    undoButton->setEnabled(!history_.isEmpty());
    showFocusedField();
    showWhetherMeasured();
}

// The tool tip has what there is no room for.
void Form7::showPeak() {
    const ShownPeak peak = shownPeak(work_, source_);
    for (const auto& [field, text] :
         {std::pair{centroid, &peak.centroid}, std::pair{fwhm, &peak.fwhm}}) {
        field->setText(toWindow(*text));
        field->setCursorPosition(0);
        field->setToolTip(field->text());
    }
}

// Results of other bounds than those beside them are grey.
void Form7::showWhetherMeasured() {
    const QPalette::ColorGroup group =
        resultsAreOfBounds(work_) ? QPalette::Active : QPalette::Disabled;
    for (QLineEdit* field : {netArea, countRate, relativeError, lowBackgroundSum, peakSum,
                             highBackgroundSum, centroid, fwhm}) {
        QPalette colours = field->palette();
        colours.setColor(QPalette::Active, QPalette::Text, palette().color(group, QPalette::Text));
        colours.setColor(QPalette::Inactive, QPalette::Text,
                         palette().color(group, QPalette::Text));
        field->setPalette(colours);
    }
}

// The bound has the focus in this window, also while the main window is the active one.
void Form7::focusBound(std::int16_t number) {
    work_.state.focusedField = number;
    bounds()[static_cast<std::size_t>(number) - 1]->setFocus();
    showFocusedField();
}

// The bound that a right click into the plot fills next.
void Form7::showFocusedField() {
    for (std::size_t i = 0; i < bounds().size(); ++i) {
        const bool next = static_cast<int>(i) + 1 == work_.state.focusedField;
        QPalette colours = palette();
        if (next) {
            colours.setColor(QPalette::Base, QColor(255, 255, 192));
            colours.setColor(QPalette::Text, Qt::black);
        }
        bounds()[i]->setPalette(colours);
    }
}

bool Form7::eventFilter(QObject* watched, QEvent* event) {
    // A field would take back its own typing only.
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo)) {
        event->ignore();
        return true;
    }
    if (event->type() == QEvent::FocusIn) {
        for (std::size_t i = 0; i < bounds().size(); ++i) {
            if (bounds()[i] == watched)
                work_.state.focusedField = static_cast<std::int16_t>(i + 1);
        }
        showFocusedField();
    }
    return QWidget::eventFilter(watched, event);
}

bool Form7::leave() {
    const QScopedValueRollback<bool> leaving(leaving_, true);
    return close();
}

// Regions out of order keep the window open. A fault does not: with a spectrum of no live time
// nobody could ever leave.
bool Form7::mayClose() {
    if (leaving_ && isUntouched(work_))
        return true;
    return run([this] { return computePeakArea(work_); }) != AreaStatus::Failed;
}

void Form7::closeEvent(QCloseEvent* event) {
    if (!mayClose())
        return event->ignore();
    placement_ = placementOf(*this);
    emit setsChanged();
    QWidget::closeEvent(event);
}

void Form7::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (event->spontaneous())
        return;
    fields_.bounds.shown = false;
    emit regionsChanged();
}

void Form7::keyPressEvent(QKeyEvent* event) {
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    if (event->key() == Qt::Key_Escape)
        close();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) &&
             focused != nullptr)
        focused->click();
    else
        QWidget::keyPressEvent(event);
}

}  // namespace kestrel
