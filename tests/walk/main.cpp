// random_walk [--seed N] [--steps M]: see walk.h. Ends with 0 when nothing was found.

#include <cstdio>
#include <exception>

#include <QTimer>

#include "ui/kestrel_application.h"
#include "walk/walk.h"

namespace {

unsigned option(const char* name, unsigned otherwise) {
    const QStringList arguments = QCoreApplication::arguments();
    const qsizetype at = arguments.indexOf(QLatin1String(name));
    return at < 0 ? otherwise : arguments.value(at + 1).toUInt();
}

// How many steps were done before something was found.
unsigned walkThrough(unsigned seed, unsigned steps, kestrel::walk::Journal& journal) {
    unsigned done = 0;
    try {
        kestrel::walk::Walk walk(seed, journal);
        for (; done < steps; ++done) {
            journal.beginStep(done);
            if (!walk.step())
                return done;
        }
    } catch (const std::exception& error) {
        journal.tell(error.what());
    }
    return done;
}

}  // namespace

int main(int argc, char** argv) {
    // Never the user's display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_HASH_SEED", "0");
    // This platform tells again and again what it does not support.
    qputenv("QT_LOGGING_RULES", "default.warning=false");
    const kestrel::KestrelApplication application(argc, argv);
    const unsigned seed = option("--seed", 1);
    const unsigned steps = option("--steps", 2000);
    kestrel::walk::Journal journal(seed);
    unsigned done = 0;
    // From the event loop, as the program: what is to be deleted later is then deleted as there.
    QTimer::singleShot(0, [&] {
        done = walkThrough(seed, steps, journal);
        QApplication::exit(done == steps ? 0 : 1);
    });
    const int found = kestrel::KestrelApplication::exec();
    std::printf("seed %u: %u steps, %s found\n", seed, done, found == 0 ? "nothing" : "something");
    return found;
}
