#include "app/form2_main_window.h"

#include <algorithm>
#include <utility>

#include <QApplication>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

#include "base/runtime_fault.h"
#include "ui/fonts.h"
#include "ui/placement.h"
#include "ui/text_codec.h"
#include "version.h"

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
    : Picture1(new PictureBox(this)),
      Command1(button(this, "Command1", "<>", "Expand", "PageUp")),
      Command2(button(this, "Command2", "", "Logarithmic or linear", "L")),
      Command3(button(this, "Command3", "Yexp", "Lower the full scale", "Up")),
      Command4(button(this, "Command4", "Ycnt", "Raise the full scale", "Down")),
      Command5(button(this, "Command5", "<-", "Cursor left", "Left")),
      Command6(button(this, "Command6", "->", "Cursor right", "Right")),
      Command7(button(this, "Command7", "><", "Shrink", "PageDown")),
      Text1(new QLineEdit(this)),
      module_(module),
      dialogs_(dialogs),
      view_({module.spectrum, module.derived, module.view, module.channelColour, module.palette,
             &module.peakArea.fields.bounds},
            module.view, Picture1->canvas(), dialogs, *this) {
    setObjectName(QStringLiteral("Form2"));
    setAcceptDrops(true);
    Picture1->setObjectName(QStringLiteral("Picture1"));
    Text1->setObjectName(QStringLiteral("Text1"));
    placeControls();
    buildMenus();
    connectControls();
    Form_Load();
}

void Form2::placeControls() {
    Text1->setReadOnly(true);
    Text1->setFocusPolicy(Qt::ClickFocus);
    Text1->installEventFilter(this);
    Text1->setFont(fixedPitchFont(11));
    Text1->setMinimumWidth(Text1->fontMetrics().horizontalAdvance(QLatin1Char('0')) * 36);
    Text1->setAccessibleName(tr("Status line"));
    auto* row = new QHBoxLayout;
    for (QPushButton* b : {Command1, Command7, Command2, Command3, Command4, Command5, Command6}) {
        QSizePolicy policy = b->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        b->setSizePolicy(policy);
        b->setMinimumWidth(b->fontMetrics().horizontalAdvance(QStringLiteral("  Yexp  ")));
        row->addWidget(b);
    }
    row->addWidget(Text1, 1);
    auto* central = new QWidget(this);
    auto* column = new QVBoxLayout(central);
    column->setContentsMargins(6, 6, 6, 6);
    column->addWidget(Picture1, 1);
    column->addLayout(row);
    setCentralWidget(central);
    // Smaller than this the texts of the plot would be cut or overlap. On a screen without that
    // room the buttons and the status line come first.
    const QSize room = screen()->availableSize() - QSize(30, 120);
    Picture1->setMinimumSize(QSize(700, 320).boundedTo(room));
    const int besideStatus = row->minimumSize().width() - Text1->minimumWidth();
    Text1->setMinimumWidth(std::min(Text1->minimumWidth(), room.width() - besideStatus));
    resize(QSize(1100, 740).boundedTo(screen()->availableSize()));
}

void Form2::connectControls() {
    connect(Command1, &QPushButton::clicked, this, [this] { view_.expand(); });
    connect(Command7, &QPushButton::clicked, this, [this] { view_.shrink(); });
    connect(Command2, &QPushButton::clicked, this, [this] { view_.toggleCountAxis(); });
    connect(Command3, &QPushButton::clicked, this, [this] { view_.lowerScale(); });
    connect(Command4, &QPushButton::clicked, this, [this] { view_.raiseScale(); });
    connect(Command5, &QPushButton::clicked, this, [this] { view_.stepLeft(); });
    connect(Command6, &QPushButton::clicked, this, [this] { view_.stepRight(); });
    // Held down, the step buttons go on stepping.
    Command5->setAutoRepeat(true);
    Command6->setAutoRepeat(true);
    connect(Picture1, &PictureBox::keyDown, this,
            [this](int keyCode, int shift) { view_.keyDown(keyCode, shift); });
    connect(Picture1, &PictureBox::mouseDown, this, &Form2::Picture1_MouseDown);
    connect(Picture1, &PictureBox::wheelTurned, this,
            [this](int notches, double x) { view_.turnWheel(notches, x); });
    connect(Picture1, &PictureBox::resized, this, &Form2::Picture1_Resize);
    connect(Picture1, &PictureBox::rescaled, this, [this] { view_.redraw(); });
}

void Form2::Form_Load() {
    setWindowTitle(baseCaption());
    const WindowPlacement& placement = module_.settings.windowPlacement[mainPlacement];
    if (placement.width > narrowestPlacement)
        place(*this, placement);
    Text1->clear();
    view_.start();
    Picture1->setFocus();
}

// The window system's own first sizing is no layout: the view keeps its width.
void Form2::Picture1_Resize() {
    if (Picture1->seen())
        view_.layout();
    else
        view_.redraw();
}

void Form2::Picture1_MouseDown(int button, int, double x, double) {
    if (button == rightButton && module_.peakArea.fields.bounds.shown && form7_)
        form7_->enterCursorChannel(module_.view.cursorCh);
    else
        view_.mouseDown(x);
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
    BuildNuclideMarks();
    // The message of a fault hands the activation back to this window: what ended in one is not
    // drawn again before something else has been.
    if (!view_.drawingFaulted())
        view_.redraw();
}

// A message in front of the window takes the release of a held button away from it.
bool Form2::event(QEvent* event) {
    if (event->type() == QEvent::WindowBlocked) {
        Command5->setDown(false);
        Command6->setDown(false);
    }
    return QMainWindow::event(event);
}

// The status line can be selected and copied; all other keys belong to the plot.
bool Form2::eventFilter(QObject* watched, QEvent* event) {
    if (watched != Text1 || event->type() != QEvent::KeyPress)
        return QMainWindow::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool own = key->matches(QKeySequence::Copy) || key->matches(QKeySequence::SelectAll) ||
                     key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab ||
                     key->key() == Qt::Key_Control || key->key() == Qt::Key_Shift;
    if (own)
        return false;
    focusPlot();
    QApplication::sendEvent(Picture1, event);
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
        writeSettings(module_.settings, module_.spectrum);
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
        writePeakRegions(module_.settings, module_.spectrum);
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
        writeSettings(module_.settings, module_.spectrum);
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
    Text1->setText(toWindow(text));
}

void Form2::placeCursorMark(const CursorMark& mark) {
    Picture1->placeCursorMark(mark);
}

// The caption names the scale that a click switches to.
void Form2::showCountAxis(CountAxis axis) {
    const bool linear = axis == CountAxis::Linear;
    Command2->setText(linear ? QStringLiteral("Log") : QStringLiteral("Lin"));
    Command3->setVisible(linear);
    Command4->setVisible(linear);
}

void Form2::focusPlot() {
    Picture1->setFocus();
}

void Form2::run(PlotCommand command) {
    switch (command) {
        case PlotCommand::JumpToChannel:
            return jump_ch_Click();
        case PlotCommand::JumpToEnergy:
            return jump_engy_Click();
        case PlotCommand::OpenFile:
            return f11_Click(0);
        case PlotCommand::OpenEnergyList:
            return win_wngy_Click();
        case PlotCommand::CalibrateEnergy:
            return o11_Click(0);
        case PlotCommand::SwitchNuclideMarks:
            return o11_Click(3);
        case PlotCommand::AskNuclide:
            return askNuclide();
    }
}

}  // namespace kestrel
