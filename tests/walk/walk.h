// A walk through the real windows: random keys, clicks, menus, texts, files and sizes, and after
// every step what must hold whatever came before.
#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include <QObject>

#include "app/form2.h"
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
        CursorInside = MovesCursor | CursorFromZero | CursorToCount,
    };
    struct PlotKey;
    struct Action {
        const char* name;
        int weight;
        void (Walk::*run)();
    };
    static const std::vector<PlotKey>& plotKeys();
    static const std::vector<Action>& actions();

    void pressPlotKey();
    void pressAnyKey();
    void clickPlot();
    void enterBounds();
    void pressButton();
    void chooseItem();
    void useMenuByKeys();
    void turnWheel();
    void resizeMain();
    void useOtherWindow();
    void raiseFault();
    void leaveAndStartAgain();

    void start();
    void actOn(QWidget& window);
    void actOnModal();
    void settle();
    void perform(const Action& action);

    bool holds();
    bool stateHolds();
    bool windowHolds();
    bool promisesHold();
    bool faultsHold();
    bool captionHolds();
    bool usableAfterFault();
    bool leftProperly();
    bool require(bool condition, const char* what);
    bool faulted() const;
    bool refused() const;

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

    // Before the step.
    ViewState viewBefore_;
    QString captionBefore_;
    int inputsBefore_ = 0;
    bool regionsBefore_ = false;
    ChannelArray<std::int32_t> countsBefore_;
};

}  // namespace kestrel::walk
