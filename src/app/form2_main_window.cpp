#include "app/form2_main_window.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QStatusBar>
#include <QVBoxLayout>

#include "base/runtime_fault.h"
#include "ui/fonts.h"
#include "ui/placement.h"
#include "ui/text_codec.h"
#include "version.h"
#include "view/energy_strip.h"
#include "view/status_text.h"

namespace kestrel {
namespace {

constexpr int mainPlacement = 2;
constexpr int informationPlacement = 10;
constexpr int rightButton = 2;

QPushButton* button(QWidget* parent, const char* name, const char* caption, const char* accessible,
                    const char* key) {
    auto* result = new QPushButton(QString::fromLatin1(caption), parent);
    result->setObjectName(QString::fromLatin1(name));
    result->setAccessibleName(QString::fromLatin1(accessible));
    result->setToolTip(QStringLiteral("%1 (%2)").arg(result->accessibleName(), QLatin1String(key)));
    // A click leaves the keys with the plot.
    result->setFocusPolicy(Qt::TabFocus);
    return result;
}

}  // namespace

QString baseCaption() {
    return QStringLiteral("Kestrel  Ver: %1. %2 Rev: %3")
        .arg(versionMajor)
        .arg(versionMinor)
        .arg(versionRevision);
}

Form2::Form2(Module1& module, Dialogs& dialogs)
    : plotArea(new PictureBox(this)),
      energyStrip(
          new PictureStrip(this, [this](Canvas& canvas) { drawEnergyStrip(plotInput(), canvas); })),
      expandButton(button(this, "Command1", "<>", "Expand", "PageUp")),
      countAxisButton(button(this, "Command2", "", "Logarithmic or linear", "L")),
      lowerScaleButton(button(this, "Command3", "Yexp", "Lower the full scale", "Up")),
      raiseScaleButton(button(this, "Command4", "Ycnt", "Raise the full scale", "Down")),
      stepLeftButton(button(this, "Command5", "<-", "Cursor left", "Left")),
      stepRightButton(button(this, "Command6", "->", "Cursor right", "Right")),
      shrinkButton(button(this, "Command7", "><", "Shrink", "PageDown")),
      statusLine(new QLineEdit(this)),
      pointerStatus(new QLabel(this)),
      secondStatus(new QLabel(this)),
      module_(module),
      dialogs_(dialogs),
      noticeLine_(new NoticeLine(NoticeLine::Kind::WithButtons, this)),
      view_(plotInput(), module.view, plotArea->canvas(), dialogs, *this) {
    setObjectName(QStringLiteral("Form2"));
    setAcceptDrops(true);
    plotArea->setObjectName(QStringLiteral("Picture1"));
    statusLine->setObjectName(QStringLiteral("Text1"));
    placeControls();
    buildMenus();
    connectControls();
    showAtStart();
}

PlotInput Form2::plotInput() const {
    return {module_.spectrum,      module_.derived,     module_.view,
            module_.channelColour, module_.plotPalette, &module_.peakArea.fields.bounds,
            &module_.preferences,  &module_.comparison};
}

void Form2::placeControls() {
    statusLine->setReadOnly(true);
    statusLine->setFocusPolicy(Qt::ClickFocus);
    statusLine->installEventFilter(this);
    statusLine->setFont(fixedPitchFont(11));
    statusLine->setMinimumWidth(statusLine->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 36);
    statusLine->setAccessibleName(tr("Status line"));
    auto* row = new QHBoxLayout;
    for (QPushButton* b : {expandButton, shrinkButton, countAxisButton, lowerScaleButton,
                           raiseScaleButton, stepLeftButton, stepRightButton}) {
        QSizePolicy policy = b->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        b->setSizePolicy(policy);
        b->setMinimumWidth(b->fontMetrics().horizontalAdvance(QStringLiteral("  Yexp  ")));
        row->addWidget(b);
    }
    row->addWidget(statusLine, 1);
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(6, 6, 6, 6);
    column->setSpacing(0);
    column->addWidget(noticeLine_);
    column->addWidget(plotArea, 1);
    column->addWidget(energyStrip);
    column->addWidget(secondStatus);
    column->addSpacing(6);
    column->addLayout(row);
    setCentralWidget(central);
    // Smaller than this the texts of the plot would be cut or overlap. On a screen without that
    // room the buttons and the status line come first.
    const QSize room = screen()->availableSize() - QSize(30, 120);
    plotArea->setMinimumSize(QSize(700, 320).boundedTo(room));
    const int besideStatus = row->minimumSize().width() - statusLine->minimumWidth();
    statusLine->setMinimumWidth(std::min(statusLine->minimumWidth(), room.width() - besideStatus));
    statusBar()->addWidget(pointerStatus, 1);
    statusBar()->setSizeGripEnabled(false);
    pointerStatus->setAccessibleName(tr("Under the pointer"));
    secondStatus->setAccessibleName(tr("Second spectrum"));
    secondStatus->setTextFormat(Qt::PlainText);
    secondStatus->setFont(fixedPitchFont(10));
    secondStatus->setContentsMargins(0, 3, 0, 0);
    // A long name does not widen the window.
    secondStatus->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    secondStatus->hide();
    energyStrip->setAccessibleName(tr("Energy axis"));
    energyStrip->setVisible(module_.preferences.energyAxis);
    resize(QSize(1100, 740 + energyStrip->height() + statusBar()->sizeHint().height())
               .boundedTo(screen()->availableSize()));
}

void Form2::connectControls() {
    connect(expandButton, &QPushButton::clicked, this, [this] { view_.expand(); });
    connect(shrinkButton, &QPushButton::clicked, this, [this] { view_.shrink(); });
    connect(countAxisButton, &QPushButton::clicked, this, [this] { view_.toggleCountAxis(); });
    connect(lowerScaleButton, &QPushButton::clicked, this, [this] { view_.lowerScale(); });
    connect(raiseScaleButton, &QPushButton::clicked, this, [this] { view_.raiseScale(); });
    connect(stepLeftButton, &QPushButton::clicked, this, [this] { view_.stepLeft(); });
    connect(stepRightButton, &QPushButton::clicked, this, [this] { view_.stepRight(); });
    // Held down, the step buttons go on stepping.
    stepLeftButton->setAutoRepeat(true);
    stepRightButton->setAutoRepeat(true);
    connect(plotArea, &PictureBox::keyDown, this,
            [this](int keyCode, int shift) { view_.keyDown(keyCode, shift); });
    connect(plotArea, &PictureBox::mouseDown, this, &Form2::plotPressed);
    connect(plotArea, &PictureBox::wheelTurned, this,
            [this](int notches, int shift, double x) { view_.turnWheel(notches, x, shift); });
    connect(plotArea, &PictureBox::dragging, this, &Form2::showDrawn);
    connect(plotArea, &PictureBox::dragged, this, &Form2::takeDrawn);
    connect(plotArea, &PictureBox::pointerMoved, this, &Form2::showPointer);
    connect(plotArea, &PictureBox::pointerLeft, pointerStatus, &QLabel::clear);
    connect(noticeLine_, &NoticeLine::restoreAsked, this, &Form2::restoreSpectrum);
    connect(noticeLine_, &NoticeLine::closeAsked, this, &Form2::closeNotice);
    connect(plotArea, &PictureBox::resized, this, &Form2::plotResized);
    connect(plotArea, &PictureBox::rescaled, this, [this] { view_.redraw(); });
}

void Form2::showAtStart() {
    setWindowTitle(baseCaption());
    const WindowPlacement& placement = module_.settings.windowPlacement[mainPlacement];
    if (placement.width > narrowestPlacement)
        place(*this, placement);
    statusLine->clear();
    if (module_.preferences.colours != ColourScheme::Black || module_.preferences.largeTexts)
        takeLook();
    view_.start();
    plotArea->setFocus();
}

// The window system's own first sizing is no layout: the view keeps its width.
void Form2::plotResized() {
    if (plotArea->seen())
        view_.layout();
    else
        view_.redraw();
}

void Form2::plotPressed(int button, int, double x, double) {
    if (button == rightButton && module_.peakArea.fields.bounds.shown && form7_)
        form7_->enterCursorChannel(module_.view.cursorCh);
    else
        view_.mouseDown(x);
}

bool Form2::drawsRegion(int shift) const {
    return (shift & shiftHeld) != 0 && form7_ && form7_->isVisible();
}

void Form2::showDrawn(int shift, double from, double to) {
    if (!drawsRegion(shift))
        return;
    const ChannelRange range = drawnRange(module_.spectrum, from, to);
    pointerStatus->setText(toWindow(rangeLine(module_.spectrum, range)));
}

void Form2::takeDrawn(int shift, double from, double to) {
    if (!drawsRegion(shift))
        return view_.zoomTo(from, to);
    const ChannelRange range = drawnRange(module_.spectrum, from, to);
    form7_->enterRange(range.low, range.high);
}

void Form2::showPointer(double x) {
    pointerStatus->setText(toWindow(pointerLine(module_.spectrum, x)));
}

void Form2::showDataInformation() {
    if (!form10_)
        form10_ = std::make_unique<Form10>(
            module_.headerLines, module_.settings.windowPlacement[informationPlacement], this);
    form10_->show();
    form10_->raise();
    form10_->activateWindow();
}

void Form2::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow())
        return;
    view_.activate();
    // A nuclide that was chosen in another window shows on return.
    buildMarks();
    // The message of a fault hands the activation back to this window: what ended in one is not
    // drawn again before something else has been.
    if (!view_.drawingFaulted())
        view_.redraw();
}

// A message in front of the window takes the release of a held button away from it.
bool Form2::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        stepLeftButton->setDown(false);
        stepRightButton->setDown(false);
    }
    return QMainWindow::event(event);
}

// The status line can be selected and copied; all other keys belong to the plot. What is typed into
// a menu chooses an item of it: the keys of the plot that menus show must not take it away.
bool Form2::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && watched != statusLine) {
        event->accept();
        return true;
    }
    if (watched != statusLine || event->type() != QEvent::KeyPress)
        return QMainWindow::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool own = key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll) ||
                     key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab ||
                     key->key() == Qt::Key_Control || key->key() == Qt::Key_Shift;
    if (own)
        return false;
    focusPlot();
    QApplication::sendEvent(plotArea, event);
    return true;
}

// The peak-area window first, which alone may refuse: then nothing has been closed.
bool Form2::closeOtherWindows() {
    if (form7_ && form7_->isVisible() && !form7_->leave())
        return false;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != this && window->isVisible() && !window->close())
            return false;
    }
    return true;
}

// Settings that cannot be saved do not keep the user here for ever.
bool Form2::saveSettings() {
    try {
        writeSettings(module_.settings, module_.calibrationChoice);
        writePreferences(module_.preferences);
        return true;
    } catch (const RuntimeFault& fault) {
        return dialogs_.message(
            {.text = "The settings could not be saved.\nLeave without saving them ?",
             .title = "Check...",
             .icon = Icon::Question,
             .buttons = Buttons::OkCancel,
             .details = std::string(fault.text()) + '\n' + fault.subject()});
    }
}

// Told once; the exit tries and tells again.
void Form2::savePeakRegions() {
    try {
        writePeakRegions(module_.settings, module_.calibrationChoice);
        regionsUnsaved_ = false;
    } catch (const RuntimeFault& fault) {
        if (!std::exchange(regionsUnsaved_, true))
            dialogs_.message({.text = "The peak regions could not be saved.",
                              .icon = Icon::Exclamation,
                              .details = std::string(fault.text()) + '\n' + fault.subject()});
    }
}

void Form2::endSession() {
    module_.settings.windowPlacement[mainPlacement] = placementOf(*this);
    try {
        if (form7_ && form7_->isVisible())
            keepEntered(peakAreaWork());
        writeSettings(module_.settings, module_.calibrationChoice);
        writePreferences(module_.preferences);
    } catch (const RuntimeFault&) {
        // Nobody is left to be told.
    }
}

void Form2::closeEvent(QCloseEvent* event) {
    module_.settings.windowPlacement[mainPlacement] = placementOf(*this);
    event->ignore();  // also where one of the others ends in a fault
    if (closeOtherWindows() && saveSettings())
        event->accept();
}

void Form2::showStatus(std::string_view text) {
    statusLine->setText(toWindow(text));
}

void Form2::placeCursorMark(const CursorMark& mark) {
    plotArea->placeCursorMark(mark);
    showSecondLine();
}

void Form2::pictureDrawn() {
    plotArea->placeTexts(markTextsOn(plotArea->canvas()));
    energyStrip->update();
    if (peaks_)
        peaks_->follow();
}

// The caption names the scale that a click switches to.
void Form2::showCountAxis(CountAxis axis) {
    const bool linear = axis == CountAxis::Linear;
    countAxisButton->setText(linear ? QStringLiteral("Log") : QStringLiteral("Lin"));
    lowerScaleButton->setVisible(linear);
    raiseScaleButton->setVisible(linear);
}

void Form2::focusPlot() {
    plotArea->setFocus();
}

void Form2::run(PlotCommand command) {
    switch (command) {
        case PlotCommand::JumpToChannel:
            return jumpToChannel();
        case PlotCommand::JumpToEnergy:
            return jumpToEnergy();
        case PlotCommand::OpenFile:
            return openSpectrumFile();
        case PlotCommand::OpenEnergyList:
            return showEnergyList();
        case PlotCommand::CalibrateEnergy:
            return calibrateEnergy();
        case PlotCommand::SwitchNuclideMarks:
            return switchNuclideMarks();
        case PlotCommand::AskNuclide:
            return askNuclide();
        case PlotCommand::ShowPeakOfSet:
            return showPeakOfSet();
    }
}

}  // namespace kestrel
