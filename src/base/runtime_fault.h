// A run-time fault: the error that ends the current operation, with its number and standing text.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace kestrel {

enum class Fault : int {
    InvalidCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    BadFileName = 52,
    FileNotFound = 53,
    DeviceError = 57,
    DiskFull = 61,
    InputPastEnd = 62,
    PermissionDenied = 70,
    PathAccess = 75,
    PathNotFound = 76,
    Printer = 482,
};

std::string_view faultText(Fault fault);

// Thrown where an operation cannot go on, and shown by the application's event loop. Who catches
// one on its way there puts something in order first, as the open command does, or has an answer
// without it. What the operation wrote before the fault stays written.
class RuntimeFault : public std::exception {
  public:
    // `subject` says what was being worked on (a path, as a rule) and may be empty.
    explicit RuntimeFault(Fault fault, std::string subject = {});

    Fault fault() const noexcept { return fault_; }
    int number() const noexcept { return static_cast<int>(fault_); }
    std::string_view text() const { return faultText(fault_); }
    const std::string& subject() const noexcept { return subject_; }
    const char* what() const noexcept override { return message_.c_str(); }

    // "Run-time error 'N':", a blank line and the text.
    const std::string& message() const noexcept { return message_; }

  private:
    Fault fault_;
    std::string subject_;
    std::string message_;
};

}  // namespace kestrel
