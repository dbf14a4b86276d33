// What the walk does: one table of actions, and the tables that they draw from.

#include <numeric>

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QDialog>
#include <QMenuBar>
#include <QTest>
#include <QWheelEvent>

#include "app/nuclide_location.h"
#include "ui/kestrel_application.h"
#include "ui/text_codec.h"
#include "walk/walk.h"

namespace kestrel::walk {
namespace {

constexpr Qt::KeyboardModifier modifiers[] = {Qt::NoModifier,      Qt::NoModifier,
                                              Qt::NoModifier,      Qt::ShiftModifier,
                                              Qt::ControlModifier, Qt::AltModifier};
constexpr Qt::MouseButton mouseButtons[] = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                            Qt::MiddleButton};
constexpr Qt::Key windowKeys[] = {
    Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return, Qt::Key_Enter,  Qt::Key_Escape, Qt::Key_Space,
    Qt::Key_Up,  Qt::Key_Down,    Qt::Key_Left,   Qt::Key_Right,  Qt::Key_Home,   Qt::Key_End,
    Qt::Key_F5,  Qt::Key_F10,     Qt::Key_F11,    Qt::Key_PageUp, Qt::Key_Delete, Qt::Key_Backspace,
    Qt::Key_F,   Qt::Key_P,       Qt::Key_J,      Qt::Key_O,      Qt::Key_W,      Qt::Key_N,
    Qt::Key_X,   Qt::Key_C};

// One of a window's children that a user could reach now; null where there is none.
template <typename T>
T* anyReachable(const QWidget& window, Random& random) {
    QList<T*> found = window.findChildren<T*>();
    found.removeIf([&window](const T* child) {
        return !child->isVisible() || !child->isEnabled() || child->window() != &window;
    });
    return found.isEmpty() ? nullptr : random.pick(found);
}

QPoint anyPlace(const QWidget& widget, Random& random) {
    return {random.below(std::max(widget.width(), 1)), random.below(std::max(widget.height(), 1))};
}

std::string nameOf(const QWidget& widget) {
    const QString name = widget.objectName();
    return name.isEmpty() ? widget.metaObject()->className() : name.toStdString();
}

}  // namespace

struct Walk::PlotKey {
    Qt::Key key;
    unsigned effects = Nothing;
};

constexpr Walk::PlotKey Walk::plotKeys[] = {{Qt::Key_Left, MovesCursor | CursorFromZero},
                                            {Qt::Key_Right, MovesCursor | CursorToCount},
                                            {Qt::Key_Left, MovesCursor | CursorFromZero},
                                            {Qt::Key_Right, MovesCursor | CursorToCount},
                                            {Qt::Key_Less, Jumps},
                                            {Qt::Key_Greater, Jumps},
                                            {Qt::Key_A, Jumps | FocusesPlot},
                                            {Qt::Key_F1, Jumps | FocusesPlot},
                                            {Qt::Key_Z, Jumps | FocusesPlot},
                                            {Qt::Key_L, Redraws | FocusesPlot},
                                            {Qt::Key_Up},
                                            {Qt::Key_Down},
                                            {Qt::Key_PageUp},
                                            {Qt::Key_PageDown},
                                            {Qt::Key_G},
                                            {Qt::Key_G},
                                            {Qt::Key_F7},
                                            {Qt::Key_E},
                                            {Qt::Key_F5},
                                            {Qt::Key_I, FocusesPlot},
                                            {Qt::Key_B, Redraws},
                                            {Qt::Key_N}};

struct Walk::Action {
    const char* name;
    int weight;
    void (Walk::*run)();
};

constexpr Walk::Action Walk::actions[] = {
    {"key on the plot", 40, &Walk::pressPlotKey},
    {"six bounds", 4, &Walk::enterBounds},
    {"menu item", 14, &Walk::chooseItem},
    {"wheel", 2, &Walk::turnWheel},
    {"size of the main window", 3, &Walk::resizeMain},
    {"main window", 30, &Walk::useMainWindow},
    {"other window", 24, &Walk::useOtherWindow},
    {"a fault", 1, &Walk::raiseFault},
    {"leave and start again", 1, &Walk::leave},
};

Walk::Walk(unsigned seed, Journal& journal)
    : random_(seed), journal_(journal), files_(random_), dialogs_(random_, files_) {
    static_cast<KestrelApplication*>(qApp)->showFaultsIn(dialogs_);
    QApplication::setQuitOnLastWindowClosed(false);
    // Whenever a modal window waits for its user, the walk is the user.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            [this] {
                if (modalActPending_ || QApplication::activeModalWidget() == nullptr)
                    return;
                modalActPending_ = true;
                QMetaObject::invokeMethod(this, &Walk::actOnModal, Qt::QueuedConnection);
            });
    start();
}

Walk::~Walk() {
    // Its last events may still ask for the dialogs.
    form2_.reset();
    settle();
}

void Walk::start() {
    form2_.reset();
    module_ = std::make_unique<Module1>();
    module_->database = NuclideDatabase(KESTREL_JET_READER);
    startModule1(*module_, files_.settingsFolder(), [this](std::string& marigoldDir) {
        checkNuclideDatabase(marigoldDir, files_.folder(), dialogs_);
    });
    // Damaged settings may name any folder of this computer.
    for (std::string* folder : {&module_->settings.systemDir, &module_->settings.saveAsDir}) {
        if (!files_.holds(*folder))
            *folder = files_.settingsFolder();
    }
    form2_ = std::make_unique<Form2>(*module_, dialogs_);
    form2_->show();
    settle();
    ordinary_ = true;
    statusStale_ = false;
    countsBefore_ = module_->spectrum.counts;
}

void Walk::settle() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// From the event loop, so that faults end where the program's own do.
void Walk::perform() {
    int chance = random_.below(
        std::accumulate(std::begin(actions), std::end(actions), 0,
                        [](int sum, const Action& action) { return sum + action.weight; }));
    const Action* action = actions;
    for (; chance >= action->weight; ++action)
        chance -= action->weight;
    journal_.note(action->name);
    QMetaObject::invokeMethod(this, action->run, Qt::QueuedConnection);
    settle();
    if (QWidget* menu = QApplication::activePopupWidget())
        menu->close();
}

// QTest's own keyClick knows the text of some keys only.
void Walk::press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers held) {
    journal_.note("  " + nameOf(widget) + " " + QKeySequence(key | held).toString().toStdString());
    const bool printable = key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde;
    const QChar character(printable ? static_cast<char16_t>(key) : u'\r');
    const bool text = printable || key == Qt::Key_Return || key == Qt::Key_Enter;
    QTest::sendKeyEvent(QTest::Click, &widget, key, text ? QString(character.toLower()) : QString(),
                        held);
}

void Walk::click(QWidget& widget) {
    journal_.note("  click " + nameOf(widget));
    QTest::mouseEvent(random_.oneIn(4) ? QTest::MouseDClick : QTest::MouseClick, &widget,
                      random_.pick(mouseButtons), random_.pick(modifiers),
                      anyPlace(widget, random_));
}

void Walk::pressPlotKey() {
    // With another window in front, the letters of its controls would come before those of the
    // plot.
    form2_->activateWindow();
    settle();
    const PlotKey& key = random_.pick(plotKeys);
    effects_ = key.effects;
    const bool sign = key.key == Qt::Key_Less || key.key == Qt::Key_Greater;
    press(*form2_->plotArea, key.key, sign ? Qt::ShiftModifier : random_.pick(modifiers));
}

// By right clicks, of which each fills the field after the last.
void Walk::enterBounds() {
    effects_ = MovesCursor;
    int x = random_.below(form2_->plotArea->width());
    for (int i = 0; i < 6; ++i) {
        QTest::mouseClick(form2_->plotArea, Qt::LeftButton, {}, {x, 100});
        QTest::mouseClick(form2_->plotArea, Qt::RightButton, {}, {x, 100});
        x += random_.between(2, 20);
    }
}

void Walk::chooseItem() {
    const QList<QAction*> items = form2_->menuBar()->findChildren<QAction*>();
    QAction* item = random_.pick(items);
    const QString name = item->objectName();
    journal_.note("  " + name.toStdString());
    // The table of keys says what the same commands promise.
    if (name.startsWith(QLatin1String("jump_")))
        effects_ = Jumps | FocusesPlot;
    else if (name.startsWith(QLatin1String("o111(")))
        effects_ = Redraws | FocusesPlot;
    leafed_ = name == QLatin1String("nextFile") || name == QLatin1String("previousFile");
    if (leafed_)
        effects_ = MovesCursor;
    if (item->menu() == nullptr)
        item->trigger();
}

void Walk::turnWheel() {
    effects_ = MovesCursor;
    const QPointF place = anyPlace(*form2_->plotArea, random_);
    QWheelEvent wheel(place, form2_->plotArea->mapToGlobal(place), {},
                      {0, random_.between(-240, 240)}, Qt::NoButton, random_.pick(modifiers),
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(form2_->plotArea, &wheel);
}

void Walk::resizeMain() {
    if (random_.oneIn(4))
        form2_->activateWindow();
    form2_->resize(random_.oneIn(6) ? random_.below(3000) : random_.between(600, 1300),
                   random_.between(300, 900));
}

void Walk::useMainWindow() {
    effects_ = MovesCursor;
    actOn(*form2_);
}

void Walk::useOtherWindow() {
    QList<QWidget*> others = QApplication::topLevelWidgets();
    others.removeIf([this](const QWidget* window) {
        return window == form2_.get() || !window->isVisible() ||
               !window->objectName().startsWith(QLatin1String("Form"));
    });
    // The set of all windows has no order of its own.
    std::ranges::sort(others, {}, &QWidget::objectName);
    if (others.isEmpty())
        return;
    const QPointer<QWidget> window = random_.pick(others);
    for (int i = random_.below(4); i >= 0 && window && window->isVisible(); --i) {
        actOn(*window);
        QApplication::processEvents();
    }
}

void Walk::raiseFault() {
    effects_ = Faults;
    dialogs_.setPointer(Pointer::Hourglass);
    throw RuntimeFault(Fault::Printer);
}

void Walk::leave() {
    form2_->close();
}

// One act of a user of any window.
void Walk::actOn(QWidget& window) {
    // Whatever it is given, the folder chooser must not lead out of the walk's own folders.
    auto* folder = window.findChild<QLineEdit*>(QStringLiteral("Text1"));
    if (window.objectName() == QLatin1String("Form6") && folder != nullptr &&
        !files_.holds(fromWindow(folder->text())))
        folder->setText(toWindow(files_.folder()));
    dialogs_.wrote = dialogs_.wrote || window.objectName() == QLatin1String("Form11");
    if (QWidget* popup = QApplication::activePopupWidget()) {
        press(*popup, random_.pick(windowKeys));
        effects_ |= MovesCursor;  // it may be a menu of the main window
        popup->close();
        return;
    }
    journal_.note("  " + nameOf(window));
    const int kind = random_.below(20);
    if (auto* field = kind < 5 ? anyReachable<QLineEdit>(window, random_) : nullptr) {
        const std::string text = files_.text();
        journal_.note("  " + nameOf(*field) + " = " + text);
        field->setFocus();
        field->selectAll();
        if (!field->isReadOnly())
            field->insert(toWindow(text));
    } else if (auto* button = kind < 9 ? anyReachable<QPushButton>(window, random_) : nullptr) {
        journal_.note("  press " + button->text().toStdString());
        QTest::mouseClick(button, Qt::LeftButton);
    } else if (auto* child = kind < 13 ? anyReachable<QWidget>(window, random_) : nullptr) {
        click(*child);
    } else if (kind < 18) {
        QWidget* target = window.focusWidget();
        const auto key = static_cast<Qt::Key>(random_.oneIn(4) ? random_.between(0x20, 0x7e)
                                                               : random_.pick(windowKeys));
        press(target == nullptr ? window : *target, key, random_.pick(modifiers));
    } else if (kind == 18) {
        window.activateWindow();
        window.resize(random_.between(50, 1200), random_.between(50, 900));
    } else if (&window != form2_.get()) {
        window.close();
    }
}

void Walk::actOnModal() {
    constexpr int mostActs = 60;
    modalActPending_ = false;
    auto* window = QApplication::activeModalWidget();
    if (window == nullptr)
        return;
    dialogs_.modalsAllowed = ++modalActs_ < mostActs / 2;
    if (modalActs_ > mostActs) {
        journal_.note("  " + nameOf(*window) + " has been open long enough");
        if (auto* dialog = qobject_cast<QDialog*>(window))
            return dialog->reject();
        window->close();
    } else if (form2_ && random_.oneIn(12)) {
        resizeMain();
    } else {
        actOn(*window);
    }
}

}  // namespace kestrel::walk
