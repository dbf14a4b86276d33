// Runs the rest of a scope without the superuser's right to ignore file permissions.
#pragma once

#include <unistd.h>

namespace kestrel::test {

class OrdinaryUser {
  public:
    OrdinaryUser() : user_(geteuid()) { changed_ = user_ == 0 && seteuid(nobody) == 0; }
    ~OrdinaryUser() {
        if (changed_ && seteuid(user_) != 0)
            _exit(1);
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  private:
    static constexpr uid_t nobody = 65534;
    uid_t user_;
    bool changed_ = false;
};

}  // namespace kestrel::test
