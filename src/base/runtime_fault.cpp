#include "base/runtime_fault.h"

#include <utility>

namespace kestrel {

std::string_view faultText(Fault fault) {
    switch (fault) {
        case Fault::InvalidCall:
            return "Invalid procedure call or argument";
        case Fault::Overflow:
            return "Overflow";
        case Fault::OutOfMemory:
            return "Out of memory";
        case Fault::SubscriptOutOfRange:
            return "Subscript out of range";
        case Fault::DivisionByZero:
            return "Division by zero";
        case Fault::BadFileName:
            return "Bad file name or number";
        case Fault::FileNotFound:
            return "File not found";
        case Fault::DeviceError:
            return "Device I/O error";
        case Fault::DiskFull:
            return "Disk full";
        case Fault::InputPastEnd:
            return "Input past end of file";
        case Fault::PermissionDenied:
            return "Permission denied";
        case Fault::PathAccess:
            return "Path/File access error";
        case Fault::PathNotFound:
            return "Path not found";
        case Fault::Printer:
            return "Printer error";
    }
    return {};
}

RuntimeFault::RuntimeFault(Fault fault, std::string subject)
    : fault_(fault), subject_(std::move(subject)) {
    message_ = "Run-time error '" + std::to_string(number()) + "':\n\n";
    message_ += faultText(fault);
}

}  // namespace kestrel
