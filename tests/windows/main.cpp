// Window tests run on the offscreen platform, in the program's own application object.

#include <gtest/gtest.h>

#include "base/qt/kestrel_application.h"

// A run-time fault on its way to the event loop passes through Qt's own functions, which then lose
// these small objects of theirs.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n"
           "leak:QMutableEventPoint::detach\n"
           "leak:QArrayData::allocate\n";
}

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    const kestrel::KestrelApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
