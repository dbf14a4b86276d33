#include "walk/journal.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>

#if defined(KESTREL_SANITIZED)
#include <sanitizer/common_interface_defs.h>
#endif

namespace kestrel::walk {
namespace {

constexpr std::size_t kept = 30;
constexpr unsigned longestStep = 20;  // seconds

const Journal* told = nullptr;

void write(std::string_view text) {
    [[maybe_unused]] const auto ignored = ::write(STDERR_FILENO, text.data(), text.size());
}

void onSignal(int signal) {
    told->tell(signal == SIGALRM ? "a step that does not end" : "the end of the program");
    std::signal(SIGABRT, SIG_DFL);
    std::abort();
}

}  // namespace

Journal::Journal(unsigned seed) : seed_(std::to_string(seed)) {
    told = this;
    std::signal(SIGALRM, onSignal);
#if defined(KESTREL_SANITIZED)
    __sanitizer_set_death_callback([] { told->tell("what the sanitizer says"); });
#else
    for (const int signal : {SIGSEGV, SIGABRT, SIGFPE, SIGBUS})
        std::signal(signal, onSignal);
#endif
}

void Journal::beginStep(long step) {
    step_ = std::to_string(step) + " ";
    repetition_ = "random_walk --seed " + seed_ + " --steps " + std::to_string(step + 1);
    alarm(longestStep);
}

void Journal::note(const std::string& what) {
    if (last_.size() == kept)
        last_.pop_front();
    last_.push_back(step_ + what + "\n");
}

void Journal::tell(std::string_view reason) const {
    write("What the walk did last, each with its step:\n");
    for (const std::string& line : last_)
        write(line);
    write("The random walk found: ");
    write(reason);
    write("\nRepeat it with: ");
    write(repetition_);
    write("\n");
}

}  // namespace kestrel::walk
