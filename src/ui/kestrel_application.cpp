#include "ui/kestrel_application.h"

#include <new>

#include <QEvent>
#include <QLabel>

#include "ui/fonts.h"
#include "ui/placement.h"

namespace kestrel {
KestrelApplication::KestrelApplication(int& argc, char** argv) : QApplication(argc, argv) {
    setApplicationName(QString::fromLatin1(applicationTitle));
    // Says to the desktop whose windows these are: the name of packaging/kestrel.desktop.
    setDesktopFileName(QStringLiteral("kestrel"));
    registerFontSubstitutes();
}

namespace {

// Left to itself, Qt takes a label, box or tool tip for HTML where its text looks like that: a
// file's name would show headlines, load pictures and open links.
void keepPlain(QObject* receiver) {
    if (auto* label = qobject_cast<QLabel*>(receiver); label != nullptr)
        label->setTextFormat(Qt::PlainText);
}

void keepWhole(QObject* receiver) {
    auto* window = qobject_cast<QWidget*>(receiver);
    const bool framed = window != nullptr &&
                        (window->windowType() == Qt::Window || window->windowType() == Qt::Dialog);
    if (framed)
        keepOnScreen(*window);
}

}  // namespace

bool KestrelApplication::notify(QObject* receiver, QEvent* event) {
    if (event->type() == QEvent::Polish)
        keepPlain(receiver);
    if (event->type() == QEvent::Show && !event->spontaneous())
        keepWhole(receiver);
    const bool layingOut = event->type() == QEvent::Resize || event->type() == QEvent::Show;
    try {
        return QApplication::notify(receiver, event);
    } catch (const RuntimeFault& fault) {
        if (dialogs_ == nullptr)
            throw;
        show(fault, layingOut);
    } catch (const std::bad_alloc&) {
        if (dialogs_ == nullptr)
            throw;
        show(RuntimeFault(Fault::OutOfMemory), layingOut);
    }
    return true;
}

void KestrelApplication::show(const RuntimeFault& fault, bool later) {
    dialogs_->setPointer(Pointer::Default);
    if (showing_)
        return;
    showing_ = true;
    const auto tell = [this, fault] {
        dialogs_->message({.text = fault.message(), .details = fault.subject()});
        showing_ = false;
    };
    if (later)
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
    else
        tell();
}

}  // namespace kestrel
