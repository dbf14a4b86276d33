// What the leak check passes over in programs that drive the windows.

// A run-time fault on its way to the event loop passes through Qt's own functions, which then lose
// these small objects of theirs.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:QtSharedPointer::ExternalRefCountData::getAndRef\n"
           "leak:QMutableEventPoint::detach\n"
           "leak:QArrayData::allocate\n";
}
