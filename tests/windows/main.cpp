// Window tests run on the offscreen platform, in the program's own application object.

#include <gtest/gtest.h>

#include "ui/kestrel_application.h"

int main(int argc, char** argv) {
    // On a screen that no window of the tests is larger than.
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" KESTREL_TEST_SCREEN);
    testing::InitGoogleTest(&argc, argv);
    const kestrel::KestrelApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
