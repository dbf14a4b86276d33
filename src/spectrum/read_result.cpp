#include "spectrum/read_result.h"

#include <utility>

namespace kestrel {
namespace {

// What a fault means while a file is read.
std::string meaning(const RuntimeFault& fault) {
    switch (fault.fault()) {
        case Fault::Overflow:
            return "a number does not fit its place.";
        case Fault::SubscriptOutOfRange:
            return "there are more than 17001 channels.";
        case Fault::InputPastEnd:
            return "counts expected below, but the file ends.";
        default:
            return std::string(fault.text()) + ".";
    }
}

}  // namespace

ReadResult refused(std::string reason) {
    return {.end = Reading::Refused, .reason = std::move(reason)};
}

ReadResult failed(const RuntimeFault& fault, const std::string& place) {
    return {
        .end = Reading::Failed, .reason = place + ": " + meaning(fault), .fault = fault.fault()};
}

}  // namespace kestrel
