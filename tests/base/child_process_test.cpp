#include "base/child_process.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <new>

namespace kestrel {
namespace {

TEST(ChildProcess, IsEndedWhateverItDoes) {
    using End = ChildResult::End;
    const ChildLimits limits{.time = std::chrono::milliseconds(300), .output = 100000};
    struct Case {
        const char* script;
        End end;
        int exitCode;
    };
    const Case cases[] = {
        {"echo text", End::Exited, 0},
        {"exit 3", End::Exited, 3},
        {"kill -SEGV $$", End::Crashed, 0},
        {"sleep 60", End::TookTooLong, 0},
        {"exec >&-; sleep 60", End::TookTooLong, 0},
        {"trap '' TERM; while :; do :; done", End::TookTooLong, 0},
        {"yes", End::WroteTooMuch, 0},
    };
    for (const Case& c : cases) {
        const auto begin = std::chrono::steady_clock::now();
        const ChildResult result = runChild({"/bin/sh", "-c", c.script}, limits);
        EXPECT_EQ(result.end, c.end) << c.script;
        EXPECT_EQ(result.exitCode, c.exitCode) << c.script;
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(10)) << c.script;
    }
    EXPECT_EQ(runChild({"/bin/sh", "-c", "echo text"}, limits).output, "text\n");
    EXPECT_EQ(runChild({"/nonexistent"}, limits).end, End::NotStarted);
    // Whose program that is depends on the current folder.
    EXPECT_EQ(runChild({"sh", "-c", "echo text"}, limits).end, End::NotStarted);
    EXPECT_EQ(runChild({"/usr/bin/env"}, limits).output, "");
}

#if !defined(KESTREL_SANITIZED)
// In a process of its own. Tells by its exit code what is left of the child and of the pipe.
[[noreturn]] void readOutputBeyondMemory() {
    const int before = ::dup(STDIN_FILENO);
    ::close(before);
    const rlimit space{rlim_t{256} << 20, RLIM_INFINITY};
    ::setrlimit(RLIMIT_AS, &space);
    try {
        runChild({"/bin/sh", "-c", "yes"}, {std::chrono::seconds(60), std::size_t{1} << 40});
    } catch (const std::bad_alloc&) {
        const bool childGone = ::waitpid(-1, nullptr, WNOHANG) < 0;
        std::exit((childGone ? 1 : 0) + (::dup(STDIN_FILENO) == before ? 2 : 0));
    }
    std::exit(0);
}

TEST(ChildProcess, LeavesNothingBehindWhenMemoryRunsOut) {
    EXPECT_EXIT(readOutputBeyondMemory(), testing::ExitedWithCode(3), "");
}
#endif

}  // namespace
}  // namespace kestrel
