// The hourglass pointer for as long as a piece of work takes, however it ends.
#pragma once

#include "base/dialogs.h"

namespace kestrel {

class HourglassScope {
  public:
    explicit HourglassScope(Dialogs& dialogs) : dialogs_(dialogs) {
        dialogs_.setPointer(Pointer::Hourglass);
    }
    ~HourglassScope() { dialogs_.setPointer(Pointer::Default); }
    HourglassScope(const HourglassScope&) = delete;
    HourglassScope& operator=(const HourglassScope&) = delete;

  private:
    Dialogs& dialogs_;
};

}  // namespace kestrel
