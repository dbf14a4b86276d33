// What the walk does: one table of actions, and the tables that they draw from.

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <QWheelEvent>

#include "app/nuclide_location.h"
#include "base/qt/kestrel_application.h"
#include "base/qt/text_codec.h"
#include "walk/walk.h"

namespace kestrel::walk {
namespace {

constexpr std::array modifiers = {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier, Qt::ShiftModifier,
                                  Qt::ControlModifier};
constexpr std::array mouseButtons = {Qt::LeftButton, Qt::LeftButton, Qt::RightButton,
                                     Qt::MiddleButton};
constexpr std::array<int, 33> windowKeys = {
    Qt::Key_Tab,    Qt::Key_Backtab, Qt::Key_Return,   Qt::Key_Enter,  Qt::Key_Escape,
    Qt::Key_Space,  Qt::Key_Up,      Qt::Key_Down,     Qt::Key_Left,   Qt::Key_Right,
    Qt::Key_Home,   Qt::Key_End,     Qt::Key_PageUp,   Qt::Key_Delete, Qt::Key_Insert,
    Qt::Key_Period, Qt::Key_Minus,   Qt::Key_1,        Qt::Key_5,      Qt::Key_9,
    Qt::Key_0,      Qt::Key_A,       Qt::Key_C,        Qt::Key_D,      Qt::Key_E,
    Qt::Key_N,      Qt::Key_O,       Qt::Key_S,        Qt::Key_X,      Qt::Key_F10,
    Qt::Key_F11,    Qt::Key_F5,      Qt::Key_Backspace};

// Everything of one kind in a window that a user could reach now.
template <typename T>
QList<T*> reachable(const QWidget& window) {
    QList<T*> result;
    for (T* child : window.findChildren<T*>()) {
        if (child->isVisible() && child->isEnabled() && child->window() == &window)
            result += child;
    }
    return result;
}

// QTest's own keyClick knows the text of some keys only.
void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier) {
    const bool printable = key >= Qt::Key_Space && key <= Qt::Key_AsciiTilde;
    const QChar character(printable ? static_cast<char16_t>(key) : u'\r');
    const bool text = printable || key == Qt::Key_Return || key == Qt::Key_Enter;
    QTest::sendKeyEvent(QTest::Click, &widget, key, text ? QString(character.toLower()) : QString(),
                        held);
}

template <typename Range>
Qt::Key anyOf(Random& random, const Range& keys) {
    return static_cast<Qt::Key>(random.pick(keys));
}

std::string nameOf(const QWidget& widget) {
    const QString name = widget.objectName();
    return (name.isEmpty() ? QString::fromLatin1(widget.metaObject()->className()) : name)
        .toStdString();
}

}  // namespace

struct Walk::PlotKey {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    unsigned effects;
};

const std::vector<Walk::PlotKey>& Walk::plotKeys() {
    constexpr auto none = Qt::NoModifier;
    constexpr auto shift = Qt::ShiftModifier;
    static const std::vector<PlotKey> keys = {
        {Qt::Key_Left, none, MovesCursor | CursorFromZero},
        {Qt::Key_Left, shift, MovesCursor | CursorFromZero},
        {Qt::Key_Left, Qt::ControlModifier, MovesCursor | CursorFromZero},
        {Qt::Key_Right, none, MovesCursor | CursorToCount},
        {Qt::Key_Right, shift, MovesCursor | CursorToCount},
        {Qt::Key_Right, Qt::ControlModifier, MovesCursor | CursorToCount},
        {Qt::Key_Less, shift, CursorInside | Redraws},
        {Qt::Key_Greater, shift, CursorInside | Redraws},
        {Qt::Key_A, none, CursorInside | Redraws | FocusesPlot},
        {Qt::Key_F1, none, CursorInside | Redraws | FocusesPlot},
        {Qt::Key_Z, shift, CursorInside | Redraws | FocusesPlot},
        {Qt::Key_L, none, Redraws | FocusesPlot},
        {Qt::Key_L, shift, Redraws | FocusesPlot},
        {Qt::Key_Up, none, Nothing},
        {Qt::Key_Down, none, Nothing},
        {Qt::Key_PageUp, none, Nothing},
        {Qt::Key_PageDown, none, Nothing},
        {Qt::Key_G, none, Nothing},
        {Qt::Key_G, none, Nothing},
        {Qt::Key_F7, none, Nothing},
        {Qt::Key_E, none, Nothing},
        {Qt::Key_F5, none, Nothing},
        {Qt::Key_I, none, FocusesPlot},
        {Qt::Key_B, none, Redraws},
        {Qt::Key_N, none, Nothing},
    };
    return keys;
}

const std::vector<Walk::Action>& Walk::actions() {
    static const std::vector<Action> table = {
        {"key on the plot", 40, &Walk::pressPlotKey},
        {"any key", 6, &Walk::pressAnyKey},
        {"click into the plot", 12, &Walk::clickPlot},
        {"six bounds", 4, &Walk::enterBounds},
        {"button", 10, &Walk::pressButton},
        {"menu item", 14, &Walk::chooseItem},
        {"menu by keys", 4, &Walk::useMenuByKeys},
        {"wheel", 2, &Walk::turnWheel},
        {"size of the main window", 3, &Walk::resizeMain},
        {"other window", 24, &Walk::useOtherWindow},
        {"a fault", 1, &Walk::raiseFault},
        {"leave and start again", 1, &Walk::leaveAndStartAgain},
    };
    return table;
}

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
void Walk::perform(const Action& action) {
    journal_.note(action.name);
    QMetaObject::invokeMethod(this, action.run, Qt::QueuedConnection);
    settle();
}

void Walk::pressPlotKey() {
    const PlotKey& key = random_.pick(plotKeys());
    journal_.note("  " + QKeySequence(key.key | key.modifiers).toString().toStdString());
    effects_ = key.effects;
    press(*form2_->Picture1, key.key, key.modifiers);
}

void Walk::pressAnyKey() {
    const auto key = static_cast<Qt::Key>(random_.oneIn(2) ? random_.pick(windowKeys)
                                                           : random_.between(0x20, 0x7e));
    journal_.note("  " + QKeySequence(key).toString().toStdString());
    effects_ = MovesCursor;
    QWidget* target = random_.oneIn(2) ? form2_->focusWidget() : form2_->Text1;
    press(target == nullptr ? *form2_->Picture1 : *target, key, random_.pick(modifiers));
}

void Walk::clickPlot() {
    effects_ = MovesCursor;
    const QSize size = form2_->Picture1->size();
    QTest::mouseClick(form2_->Picture1, random_.pick(mouseButtons), random_.pick(modifiers),
                      {random_.below(size.width()), random_.below(size.height())});
}

// By right clicks, of which each fills the field after the last.
void Walk::enterBounds() {
    effects_ = MovesCursor;
    int x = random_.below(form2_->Picture1->width());
    for (int i = 0; i < 6; ++i) {
        QTest::mouseClick(form2_->Picture1, Qt::LeftButton, {}, {x, 100});
        QTest::mouseClick(form2_->Picture1, Qt::RightButton, {}, {x, 100});
        x += random_.between(2, 20);
    }
}

void Walk::pressButton() {
    QPushButton* const buttons[] = {form2_->Command1, form2_->Command2, form2_->Command3,
                                    form2_->Command4, form2_->Command5, form2_->Command6,
                                    form2_->Command7};
    QPushButton* button = random_.pick(buttons);
    journal_.note("  " + nameOf(*button));
    if (button == form2_->Command2)
        effects_ = Redraws | FocusesPlot;
    else if (button == form2_->Command5 || button == form2_->Command6)
        effects_ = MovesCursor | FocusesPlot;
    if (!button->isVisible())
        return void(effects_ = Nothing);
    if (random_.oneIn(4))
        press(*button, Qt::Key_Space);
    else
        QTest::mouseClick(button, Qt::LeftButton);
}

void Walk::chooseItem() {
    const QList<QAction*> items = form2_->menuBar()->findChildren<QAction*>();
    QAction* item = items[random_.below(static_cast<int>(items.size()))];
    journal_.note("  " + item->objectName().toStdString());
    // The table of keys says what the same commands promise.
    if (item->objectName().startsWith(QLatin1String("jump_")))
        effects_ = CursorInside | Redraws | FocusesPlot;
    if (item->objectName().startsWith(QLatin1String("o111(")))
        effects_ = Redraws | FocusesPlot;
    if (item->menu() == nullptr)
        item->trigger();
}

void Walk::useMenuByKeys() {
    constexpr std::array letters = {Qt::Key_F, Qt::Key_P, Qt::Key_J, Qt::Key_O, Qt::Key_W};
    effects_ = MovesCursor;
    press(*form2_, random_.pick(letters), Qt::AltModifier);
    for (int i = random_.below(5); i >= 0; --i) {
        QWidget* menu = QApplication::activePopupWidget();
        if (menu == nullptr)
            return;
        const auto key = anyOf(random_, windowKeys);
        journal_.note("  " + QKeySequence(key).toString().toStdString());
        press(*menu, key);
    }
}

void Walk::turnWheel() {
    effects_ = MovesCursor;
    const QPointF place(random_.below(form2_->Picture1->width()), 100);
    QWheelEvent wheel(place, form2_->Picture1->mapToGlobal(place), {},
                      {0, random_.between(-240, 240)}, Qt::NoButton, random_.pick(modifiers),
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(form2_->Picture1, &wheel);
}

void Walk::resizeMain() {
    if (random_.oneIn(4))
        form2_->activateWindow();
    form2_->resize(random_.oneIn(6) ? random_.below(3000) : random_.between(600, 1300),
                   random_.between(300, 900));
}

void Walk::useOtherWindow() {
    QList<QWidget*> others;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        if (window != form2_.get() && window->isVisible() &&
            window->objectName().startsWith(QLatin1String("Form")))
            others += window;
    }
    // The set of all windows has no order of its own.
    std::ranges::sort(others, {}, &QWidget::objectName);
    if (others.isEmpty())
        return;
    const QPointer<QWidget> window = others[random_.below(static_cast<int>(others.size()))];
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

void Walk::leaveAndStartAgain() {
    form2_->close();
}

// One act of a user of any window but the main one.
void Walk::actOn(QWidget& window) {
    // Whatever it is given, the folder chooser must not lead out of the walk's own folders.
    auto* folder = window.findChild<QLineEdit*>(QStringLiteral("Text1"));
    if (window.objectName() == QLatin1String("Form6") && folder != nullptr &&
        !files_.holds(fromWindow(folder->text())))
        folder->setText(toWindow(files_.folder()));
    dialogs_.wrote = dialogs_.wrote || window.objectName() == QLatin1String("Form11");
    if (QWidget* popup = QApplication::activePopupWidget()) {
        press(*popup, anyOf(random_, windowKeys));
        popup->close();
        return;
    }
    const QList<QWidget*> children = reachable<QWidget>(window);
    const QList<QLineEdit*> fields = reachable<QLineEdit>(window);
    const QList<QPushButton*> buttons = reachable<QPushButton>(window);
    const int kind = random_.below(20);
    std::string what = "  " + nameOf(window) + ": ";
    if (kind < 5 && !fields.isEmpty()) {
        QLineEdit* field = fields[random_.below(static_cast<int>(fields.size()))];
        const std::string text = files_.text();
        journal_.note(what + nameOf(*field) + " = " + text);
        field->setFocus();
        field->selectAll();
        if (!field->isReadOnly())
            field->insert(toWindow(text));
    } else if (kind < 9 && !buttons.isEmpty()) {
        QPushButton* button = buttons[random_.below(static_cast<int>(buttons.size()))];
        journal_.note(what + "press " + button->text().toStdString());
        QTest::mouseClick(button, Qt::LeftButton);
    } else if (kind < 13 && !children.isEmpty()) {
        QWidget* child = children[random_.below(static_cast<int>(children.size()))];
        journal_.note(what + "click " + nameOf(*child));
        const QPoint place(random_.below(std::max(child->width(), 1)),
                           random_.below(std::max(child->height(), 1)));
        if (random_.oneIn(3))
            QTest::mouseDClick(child, Qt::LeftButton, random_.pick(modifiers), place);
        else
            QTest::mouseClick(child, random_.pick(mouseButtons), random_.pick(modifiers), place);
    } else if (kind < 18) {
        const auto key = anyOf(random_, windowKeys);
        journal_.note(what + QKeySequence(key).toString().toStdString());
        QWidget* target = window.focusWidget();
        press(target == nullptr ? window : *target, key, random_.pick(modifiers));
    } else if (kind == 18) {
        window.activateWindow();
        window.resize(random_.between(50, 1200), random_.between(50, 900));
    } else {
        journal_.note(what + "close");
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
