// random_walk [--seed N] [--steps M]: see walk.h. Ends with 0 when nothing was found.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string_view>

#include <QTimer>

#include "base/qt/kestrel_application.h"
#include "walk/walk.h"

namespace {

long option(int argc, char** argv, std::string_view name, long otherwise) {
    for (int i = 1; i + 1 < argc; ++i) {
        if (argv[i] == name)
            return std::atol(argv[i + 1]);
    }
    return otherwise;
}

// True when nothing was found.
bool walkThrough(unsigned seed, long steps, kestrel::walk::Journal& journal) {
    try {
        kestrel::walk::Walk walk(seed, journal);
        for (long i = 0; i < steps; ++i) {
            journal.beginStep(i);
            if (!walk.step())
                return false;
        }
        return true;
    } catch (const std::exception& error) {
        journal.tell(error.what());
        return false;
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Never the user's display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_HASH_SEED", "0");
    // This platform tells again and again what it does not support.
    qputenv("QT_LOGGING_RULES", "default.warning=false");
    const auto seed = static_cast<unsigned>(option(argc, argv, "--seed", 1));
    const long steps = option(argc, argv, "--steps", 2000);
    const kestrel::KestrelApplication application(argc, argv);
    kestrel::walk::Journal journal(seed);
    const auto start = std::chrono::steady_clock::now();
    // From the event loop, as the program: what is to be deleted later is then deleted as there.
    QTimer::singleShot(0, [&] { QApplication::exit(walkThrough(seed, steps, journal) ? 0 : 1); });
    const int found = kestrel::KestrelApplication::exec();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    if (found == 0)
        std::printf("seed %u: %ld steps in %.1f s, nothing found\n", seed, steps, taken.count());
    return found;
}
