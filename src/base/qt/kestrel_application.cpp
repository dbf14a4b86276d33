#include "base/qt/kestrel_application.h"

#include <new>

#include "base/qt/fonts.h"

namespace kestrel {
KestrelApplication::KestrelApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QString::fromLatin1(applicationTitle));
    // Says to the desktop whose windows these are: the name of packaging/kestrel.desktop.
    setDesktopFileName(QStringLiteral("kestrel"));
    registerFontSubstitutes();
}

bool KestrelApplication::notify(QObject* receiver, QEvent* event) {
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeFault& fault) {
        if (dialogs_ == nullptr)
            throw;
        show(fault);
    } catch (const std::bad_alloc&) {
        if (dialogs_ == nullptr)
            throw;
        show(RuntimeFault(Fault::OutOfMemory));
    }
    return true;
}

void KestrelApplication::show(const RuntimeFault& fault) {
    dialogs_->setPointer(Pointer::Default);
    if (showing_)
        return;
    showing_ = true;
    dialogs_->message({.text = fault.message(), .details = fault.subject()});
    showing_ = false;
}

}  // namespace kestrel
