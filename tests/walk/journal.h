// What a walk did last, told even when the program dies or hangs.
#pragma once

#include <deque>
#include <string>
#include <string_view>

namespace kestrel::walk {

class Journal {
  public:
    // The one journal of the process is told as well when the process ends by a signal or a
    // sanitizer's finding, and when a step takes too long.
    explicit Journal(unsigned seed);

    void beginStep(long step);
    void note(const std::string& what);
    // Allocates nothing, so that a dying process can still call it.
    void tell(std::string_view reason) const;

  private:
    std::string repetition_;  // how to come to this step again
    std::string step_;
    std::string seed_;
    std::deque<std::string> last_;
};

}  // namespace kestrel::walk
