// One call of the C library that goes wrong: it fails, writes short, or is the last of the process.
#pragma once

#include <string_view>

namespace kestrel::test {

enum class Mishap {
    Failure,     // nothing is done (a file is closed all the same)
    ShortWrite,  // a write does half of it and fails; other calls as Failure
    KillBefore,
    KillWithin,  // a write does half of it; other calls as KillAfter
    KillAfter,
};

struct PlannedMishap {
    Mishap mishap = Mishap::Failure;
    int error = 0;               // errno of a failing call
    int number = 1;              // of the call that goes wrong, counted from 1
    std::string_view only = {};  // counts calls of this name alone; empty: all that touch files
};

// For as long as it lives. One at a time.
class FailingCalls {
  public:
    explicit FailingCalls(const PlannedMishap& plan);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    // Whether there was a call of that number.
    static bool happened();
};

}  // namespace kestrel::test
