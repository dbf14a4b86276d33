// The application object: the one place where run-time faults are caught.
#pragma once

#include <QApplication>

#include "base/dialogs.h"
#include "base/runtime_fault.h"

namespace kestrel {

class KestrelApplication : public QApplication {
  public:
    // As QApplication's; `argc` must outlive the object.
    KestrelApplication(int& argc, char** argv);

    // Where faults are shown; must outlive the event loop.
    void showFaultsIn(Dialogs& dialogs) { dialogs_ = &dialogs; }

    // Delivers an event. A fault ends what the event began, is shown, and the program goes on.
    // Faults that come while one is being shown (a window being resized behind it) are not shown as
    // well.
    bool notify(QObject* receiver, QEvent* event) override;

  private:
    void show(const RuntimeFault& fault);

    Dialogs* dialogs_ = nullptr;
    bool showing_ = false;
};

}  // namespace kestrel
