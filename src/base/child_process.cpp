#include "base/child_process.h"

#include <array>

#include "base/handle.h"

#if defined(__unix__)
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <thread>
#endif

namespace kestrel {

#if defined(__unix__)
namespace {

using Clock = std::chrono::steady_clock;
using End = ChildResult::End;

class FileActions {
  public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;

    void open(int handle, int flags) {
        posix_spawn_file_actions_addopen(&actions_, handle, "/dev/null", flags, 0);
    }
    void duplicate(int from, int to) { posix_spawn_file_actions_adddup2(&actions_, from, to); }
    const posix_spawn_file_actions_t* get() const { return &actions_; }

  private:
    posix_spawn_file_actions_t actions_{};
};

// Killed and waited for when it goes out of scope before its end.
class Child {
  public:
    explicit Child(pid_t id) : id_(id) {}
    ~Child() {
        if (!runs())
            return;
        ::kill(id_, SIGKILL);
        while (::waitpid(id_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    bool runs() const { return id_ > 0; }

    // True once it has ended, which a closed output does not yet mean; false at the deadline.
    bool waitForEnd(int& status, Clock::time_point deadline) {
        while (true) {
            const pid_t answer = ::waitpid(id_, &status, WNOHANG);
            if (answer == id_) {
                id_ = none;
                return true;
            }
            if ((answer < 0 && errno != EINTR) || Clock::now() >= deadline)
                return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    static constexpr pid_t none = -1;

  private:
    pid_t id_;
};

// Where the program that started this one ignored the ends of children, they could not be waited
// for.
void waitForChildren() {
    struct sigaction action {};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        action.sa_handler = SIG_DFL;
        ::sigaction(SIGCHLD, &action, nullptr);
    }
}

pid_t start(const std::vector<std::string>& command, int output) {
    FileActions actions;
    actions.open(STDIN_FILENO, O_RDONLY);
    actions.duplicate(output, STDOUT_FILENO);
    actions.open(STDERR_FILENO, O_WRONLY);
    std::vector<std::string> words = command;
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    // None of the variables by which somebody could lead the program or its libraries astray.
    std::array<char*, 1> environment = {nullptr};
    pid_t child = 0;
    const int error = posix_spawn(&child, arguments[0], actions.get(), nullptr, arguments.data(),
                                  environment.data());
    return error == 0 ? child : Child::none;
}

// False at the deadline.
bool waitForInput(int handle, Clock::time_point deadline) {
    while (true) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        pollfd poller{handle, POLLIN, 0};
        const int ready = ::poll(&poller, 1, static_cast<int>(std::max<long>(left.count(), 0)));
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

// Collects what the child writes until it closes its end; Exited is still to be confirmed then.
End collect(int handle, const ChildLimits& limits, Clock::time_point deadline,
            std::string& output) {
    std::array<char, 65536> block{};
    while (waitForInput(handle, deadline)) {
        const ssize_t count = ::read(handle, block.data(), block.size());
        if (count == 0)
            return End::Exited;
        if (count < 0 && errno != EINTR)
            return End::Crashed;
        if (count < 0)
            continue;
        if (output.size() + static_cast<std::size_t>(count) > limits.output)
            return End::WroteTooMuch;
        output.append(block.data(), static_cast<std::size_t>(count));
    }
    return End::TookTooLong;
}

void finish(Child& child, Clock::time_point deadline, ChildResult& result) {
    int status = 0;
    if (!child.waitForEnd(status, deadline)) {
        result.end = End::TookTooLong;
        return;
    }
    result.end = WIFEXITED(status) ? End::Exited : End::Crashed;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 0;
}

}  // namespace

ChildResult runChild(const std::vector<std::string>& command, const ChildLimits& limits) {
    ChildResult result;
    if (command.empty() || !command.front().starts_with('/'))
        return result;
    waitForChildren();
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0)
        return result;
    const Handle input(pipe[0]);
    Handle output(pipe[1]);
    const Clock::time_point deadline = Clock::now() + limits.time;
    Child child(start(command, output.get()));
    output.close();
    if (!child.runs())
        return result;
    result.end = collect(input.get(), limits, deadline, result.output);
    if (result.end == End::Exited)
        finish(child, deadline, result);
    return result;
}

#else

ChildResult runChild(const std::vector<std::string>&, const ChildLimits&) {
    return {};
}

#endif

}  // namespace kestrel
