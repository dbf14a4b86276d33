// A walk through the real windows: random keys, clicks, menus, texts, files and sizes, and after
// every step what must hold whatever came before.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include <QObject>

#include "app/form2_main_window.h"
#include "app/module1.h"
#include "walk/dialogs.h"
#include "walk/files.h"
#include "walk/journal.h"

namespace kestrel::walk {

class Walk : public QObject {
  public:
    Walk(unsigned seed, Journal& journal);
    ~Walk() override;

    // False when something does not hold any more; the journal says what.
    bool step();

  private:
    // What a step promises where no fault cuts it short.
    enum Effect : unsigned {
        Nothing = 0,
        Redraws = 1,
        FocusesPlot = 2,
        MovesCursor = 4,
        CursorFromZero = 8,
        CursorToCount = 16,
        Faults = 32,
        Jumps = Redraws | MovesCursor | CursorFromZero | CursorToCount,
    };
    struct PlotKey;
    struct Action;
    static const PlotKey plotKeys[];
    static const Action actions[];

    void pressPlotKey();
    void enterBounds();
    void chooseItem();
    void turnWheel();
    void resizeMain();
    void useMainWindow();
    void useOtherWindow();
    void raiseFault();
    void leave();

    void start();
    void perform();
    void settle();
    void press(QWidget& widget, Qt::Key key, Qt::KeyboardModifiers held = Qt::NoModifier);
    void click(QWidget& widget);
    void actOn(QWidget& window);
    void actOnModal();

    bool holds();
    bool stateHolds();
    bool windowHolds();
    bool captionHolds();
    bool faultsHold();
    bool promisesHold();
    bool usableAfterFault();
    bool leftProperly();
    bool require(bool condition, const char* what);
    bool told(std::string_view start) const;
    bool isRestored() const;
    bool promised(unsigned effect) const { return (effects_ & effect) != 0; }

    Random random_;
    Journal& journal_;
    Files files_;
    WalkDialogs dialogs_;
    std::unique_ptr<Module1> module_;
    std::unique_ptr<Form2> form2_;
    unsigned effects_ = Nothing;
    int modalActs_ = 0;
    bool modalActPending_ = false;
    bool statusStale_ = false;
    bool ordinary_ = true;  // since a spectrum was shown, none has had too few or too many channels

    // What the step has brought: a fault, a fault or a refusal, a file to open.
    bool faulted_ = false;
    bool cutShort_ = false;
    bool opened_ = false;
    bool leafed_ =
        false;  // to another file of the folder or back to the last, which no dialog tells

    // Before the step.
    ViewState viewBefore_;
    QString captionBefore_;
    int inputsBefore_ = 0;
    bool regionsBefore_ = false;
    ChannelArray<std::int32_t> countsBefore_;
    std::string pathBefore_;
    std::optional<ChannelArray<std::int32_t>> restorable_;
};

}  // namespace kestrel::walk
