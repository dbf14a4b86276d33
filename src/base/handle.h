// An open file or folder of the operating system, closed when it goes out of scope.
#pragma once

#include <unistd.h>

#include <utility>

namespace kestrel {

class Handle {
  public:
    explicit Handle(int handle) : handle_(handle) {}
    Handle(Handle&& other) noexcept : handle_(other.release()) {}
    Handle& operator=(Handle&& other) noexcept {
        close();
        handle_ = other.release();
        return *this;
    }
    ~Handle() { close(); }

    bool isOpen() const { return handle_ >= 0; }
    int get() const { return handle_; }
    // What ::close says.
    int close() { return isOpen() ? ::close(release()) : 0; }

  private:
    int release() { return std::exchange(handle_, -1); }

    int handle_;
};

}  // namespace kestrel
