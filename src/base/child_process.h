// Running a helper program to its end, for work that may crash, hang or ask for too much memory.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <vector>

namespace kestrel {

struct ChildLimits {
    std::chrono::milliseconds time;  // after which the child is killed
    std::size_t output;              // bytes of standard output, after which it is killed as well
};

struct ChildResult {
    enum class End { NotStarted, Exited, Crashed, TookTooLong, WroteTooMuch };
    End end = End::NotStarted;
    int exitCode = 0;    // of a child that exited
    std::string output;  // what it wrote to its standard output
};

// Runs command[0] (an absolute path; any other is not started) with the other entries as arguments
// and waits for it. The child has no input and no environment, and its error messages go nowhere.
ChildResult runChild(const std::vector<std::string>& command, const ChildLimits& limits);

}  // namespace kestrel
