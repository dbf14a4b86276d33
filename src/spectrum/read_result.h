// How the reading of a spectrum file ended, as a reader tells it to the open command.
#pragma once

#include <string>

#include "base/runtime_fault.h"

namespace kestrel {

enum class Reading { Loaded, Refused, Failed };

struct [[nodiscard]] ReadResult {
    Reading end = Reading::Loaded;
    // Of a refusal and of a failure: what was looked for, and where. May be empty where nothing can
    // be added to the refusal or to the fault's own text.
    std::string reason = {};
    Fault fault{};             // of a failure
    std::string missing = {};  // of a spectrum that was loaded: what its file lacks
    bool tellsCalibration = true;
    bool keepsFileOpen = false;
};

// The file is none of the format.
ReadResult refused(std::string reason);

// The file is one of the format, but a fault ended the reading at `place`, such as "line 214".
ReadResult failed(const RuntimeFault& fault, const std::string& place);

}  // namespace kestrel
