// What a walk did last, told even when the program dies or hangs.
#pragma once

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

#if defined(KESTREL_SANITIZED)
#include <sanitizer/common_interface_defs.h>
#endif

namespace kestrel::walk {

class Journal {
  public:
    // The one journal of the process is told as well when the process ends by a signal or a
    // sanitizer's finding, and when a step takes too long.
    explicit Journal(unsigned seed) : seed_(std::to_string(seed)) {
        told = this;
        std::signal(SIGALRM, onSignal);
#if defined(KESTREL_SANITIZED)
        __sanitizer_set_death_callback([] { told->tell("what the sanitizer says"); });
#else
        for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS})
            std::signal(signal, onSignal);
#endif
    }

    void beginStep(unsigned step) {
        constexpr unsigned longestStep = 20;  // seconds
        alarm(longestStep);
        stepBefore_ = std::exchange(step_, "");
        repetition_ = "random_walk --seed " + seed_ + " --steps " + std::to_string(step + 1) + "\n";
    }
    void note(const std::string& what) {
        step_ += what + "\n";
    }

    // Allocates nothing, so that a dying process can still call it.
    void tell(std::string_view reason) const {
        const std::string_view parts[] = {"The last two steps of the walk:\n",
                                          stepBefore_,
                                          step_,
                                          "The random walk found: ",
                                          reason,
                                          "\nRepeat it with: ",
                                          repetition_};
        for (const std::string_view part : parts) {
            [[maybe_unused]] const auto ignored = write(STDERR_FILENO, part.data(), part.size());
        }
    }

  private:
    static void onSignal(int signal) {
        told->tell(signal == SIGALRM ? "a step that does not end" : "the end of the program");
        std::signal(SIGABRT, SIG_DFL);
        std::abort();
    }

    static inline const Journal* told = nullptr;
    std::string seed_;
    std::string repetition_;  // how to come to this step again
    std::string stepBefore_;
    std::string step_;
};

}  // namespace kestrel::walk
