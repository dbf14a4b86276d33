// The application object: the one place where run-time faults are caught, and where the texts of
// all labels, boxes and tool tips are made plain.
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
    // One that comes while Qt lays out a window is shown right after that: the windows could be
    // resized again behind the message, and Qt's layouts do not bear that halfway. Faults that come
    // while one is being shown are not shown as well.
    bool notify(QObject* receiver, QEvent* event) override;

  private:
    void show(const RuntimeFault& fault, bool later);

    Dialogs* dialogs_ = nullptr;
    bool showing_ = false;  // or waiting to be
};

}  // namespace kestrel
