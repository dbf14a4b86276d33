// How a spectrum comes into the main window: by the dialog, by the desktop, or dropped on it.

#include <QApplication>
#include <QDropEvent>
#include <QMenu>
#include <QMimeData>

#include "app/form2_main_window.h"
#include "app/recent_files.h"
#include "spectrum/open_any.h"
#include "ui/outside_paths.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr int widestPath = 480;  // pixels in a menu

// "&1 /folder/file", with the digit as its key and a long path shortened in the middle.
QString recentCaption(qsizetype number, const QString& path, const QFontMetrics& font) {
    QString shown = font.elidedText(path, Qt::ElideMiddle, widestPath);
    shown.replace(QLatin1Char('&'), QStringLiteral("&&"));
    QString digits = QString::number(number);
    return digits.insert(digits.size() - 1, QLatin1Char('&')) + QLatin1Char(' ') + shown;
}

}  // namespace

template <typename Open, typename ShowPlot>
void Form2::openWith(Open open, ShowPlot showPlot, std::int16_t peakSet) {
    OpenResult result{};
    try {
        result = open();
    } catch (const RuntimeFault&) {
        followSpectrum();
        throw;
    }
    followSpectrum();
    if (result == OpenResult::Loaded)
        showLoaded(showPlot, peakSet);
    if (result != OpenResult::Refused)
        focusPlot();
}

template <typename Open>
void Form2::openWith(Open open) {
    openWith(
        open,
        [this] {
            rememberFile(module_.preferences.recentFiles, module_.spectrum.filePath);
            view_.showNewSpectrum();
        },
        0);
}

void Form2::openSpectrumFile() {
    openWith([this] {
        return kestrel::openSpectrumFile(openTarget(), module_.settings.lastDirectory,
                                         module_.lastFilterIndex, dialogs_);
    });
}

void Form2::openAnyFile() {
    openWith([this] {
        return openAnySpectrum(openTarget(), module_.settings.lastDirectory,
                               module_.lastFilterIndex, dialogs_);
    });
}

void Form2::openSpectrumPath(const std::string& path) {
    openWith([this, &path] {
        return openAnyPath(path, openTarget(), module_.settings.lastDirectory,
                           module_.lastFilterIndex, dialogs_);
    });
}

// Made anew whenever the menu opens: files come and go. Those that are gone cannot be chosen.
void Form2::listRecentFiles() {
    QMenu& menu = *actionNamed("recent")->menu();
    menu.clear();
    for (const RecentFile& file : recentFiles(module_.preferences.recentFiles)) {
        const QString path = toSigns(file.path);
        QAction* item =
            menu.addAction(recentCaption(menu.actions().size() + 1, path, menu.fontMetrics()), this,
                           [this, file] { openSpectrumPath(file.path); });
        item->setToolTip(path);
        item->setEnabled(file.isThere);
    }
    if (menu.isEmpty())
        menu.addAction(QStringLiteral("(none yet)"))->setEnabled(false);
}

void Form2::openNextFile() {
    leaf(Direction::Next);
}

void Form2::openPreviousFile() {
    leaf(Direction::Previous);
}

// The range shown, the cursor and the set of peak areas stay.
void Form2::leaf(Direction direction) {
    const std::int16_t channels = module_.spectrum.channelCount;
    const std::int16_t set = module_.peakArea.currentSet;
    openWith(
        [this, direction] {
            return openNeighbour(direction, module_.seriesFile, openTarget(),
                                 module_.settings.lastDirectory, module_.lastFilterIndex, dialogs_);
        },
        [&] { view_.showNextSpectrum(channels); }, set);
    focusPlot();
}

OpenTarget Form2::openTarget() {
    return {module_.spectrum, module_.derived, module_.headerLines, module_.notice,
            module_.calibrationChoice};
}

void Form2::showNotice() {
    Notice all = module_.notice;
    for (const std::string& line : module_.comparison.notice.lines)
        all.add("Second spectrum: " + line);
    noticeLine_->say(all.text(), all.before != nullptr);
}

// With the view that the user had, as far as it lies in the spectrum. A refusal has left the
// caption alone.
void Form2::restoreSpectrum() {
    restoreBefore(openTarget());
    followSpectrum();
    // A file of no channels leaves a range of none.
    const ViewState& view = module_.view;
    const bool inside = view.viewStartCh >= 0 && view.viewStartCh < view.viewEndCh &&
                        view.viewEndCh <= module_.spectrum.channelCount;
    if (form10_)
        form10_->refresh();
    buildMarks();
    if (inside)
        view_.redraw();
    else
        view_.showNewSpectrum();
    focusPlot();
}

void Form2::closeNotice() {
    module_.notice.lines.clear();
    module_.comparison.notice.lines.clear();
    showNotice();
    focusPlot();
}

void Form2::showLoaded(const std::function<void()>& showPlot, std::int16_t peakSet) {
    module_.seriesFile = module_.spectrum.filePath;
    showCaption();
    if (form10_)
        form10_->refresh();
    buildMarks();
    showPlot();
    if (form7_ && form7_->isVisible() && form7_->leave())
        showPeakAreaSet(peakSet);
}

void Form2::showCaption() {
    QString path = toSigns(module_.spectrum.filePath);
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
