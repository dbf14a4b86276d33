#include "ui/session_end.h"

#include <utility>

#include <QGuiApplication>
#include <QSocketNotifier>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#endif

namespace kestrel {

SessionEnd::SessionEnd(std::function<void()> save) : save_(std::move(save)) {
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { save_(); });
    watchSignals();
}

#ifdef Q_OS_UNIX

namespace {

// A handler may do no more than write here; the event loop reads at the other end.
int wakeEnd = -1;

void wake(int signal) {
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = write(wakeEnd, &byte, 1);
}

}  // namespace

// The handler serves once: a second signal ends also a program that no longer reads its events.
void SessionEnd::watchSignals() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    wakeEnd = ends[1];
    auto* notifier = new QSocketNotifier(ends[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, readEnd = ends[0]] {
        unsigned char signal = 0;
        if (read(readEnd, &signal, 1) != 1)
            return;
        save_();
        std::raise(signal);
    });
    struct sigaction action = {};
    action.sa_handler = wake;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM})
        sigaction(signal, &action, nullptr);
}

#else

void SessionEnd::watchSignals() {}

#endif

}  // namespace kestrel
