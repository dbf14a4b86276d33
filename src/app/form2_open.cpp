// How a spectrum comes into the main window: by the dialog, by the desktop, or dropped on it.

#include <QApplication>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>

#include "app/form2_main_window.h"
#include "spectrum/open_any.h"
#include "ui/outside_paths.h"
#include "ui/text_codec.h"

namespace kestrel {

void Form2::openSpectrumFile() {
    showOpened(kestrel::openSpectrumFile(openTarget(), module_.settings.lastDirectory,
                                         module_.lastFilterIndex, dialogs_));
}

void Form2::openAnyFile() {
    showOpened(openAnySpectrum(openTarget(), module_.settings.lastDirectory,
                               module_.lastFilterIndex, dialogs_));
}

void Form2::openSpectrumPath(const std::string& path) {
    showOpened(openAnyPath(path, openTarget(), module_.settings.lastDirectory,
                           module_.lastFilterIndex, dialogs_));
}

OpenTarget Form2::openTarget() {
    return {module_.spectrum, module_.derived, module_.headerLines};
}

void Form2::showOpened(OpenResult result) {
    if (result == OpenResult::Refused)
        return;
    if (result == OpenResult::Loaded) {
        showCaption();
        if (form10_)
            form10_->refresh();
        buildMarks();
        view_.showNewSpectrum();
        if (form7_ && form7_->isVisible() && form7_->leave())
            showPeakArea();
    }
    focusPlot();
}

void Form2::showCaption() {
    QString path = asSigns(QFile::decodeName(module_.spectrum.filePath.c_str()));
    // In a window title Qt takes this for the mark of unsaved changes.
    path.replace(QStringLiteral("[*]"), QStringLiteral("[*][*]"));
    setWindowTitle(path + QStringLiteral(" ... ") + baseCaption());
}

// Qt hands a window what is dropped on it also while a modal one keeps it from all other input, and
// that one may be working on the spectrum that would be replaced.
void Form2::dragEnterEvent(QDragEnterEvent* event) {
    if (QApplication::activeModalWidget() == nullptr && !droppedPath(*event->mimeData()).empty())
        event->acceptProposedAction();
}

// Queued: a message must not keep the program waiting that the file is dropped from.
void Form2::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    const auto open = [this, path = droppedPath(*event->mimeData())] {
        if (QApplication::activeModalWidget() == nullptr)
            openSpectrumPath(path);
    };
    QMetaObject::invokeMethod(this, open, Qt::QueuedConnection);
}

}  // namespace kestrel
