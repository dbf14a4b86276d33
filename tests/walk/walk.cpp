// One step of the walk, and what must hold after it.

#include "walk/walk.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QFile>

#include "ui/text_codec.h"
#include "view/status_text.h"

namespace kestrel::walk {
namespace {

constexpr int maxChannels = 17001;
constexpr std::string_view faultStart = "Run-time error '";

}  // namespace

bool Walk::step() {
    viewBefore_ = module_->view;
    captionBefore_ = form2_->windowTitle();
    if (opened_)
        countsBefore_ = module_->spectrum.counts;
    pathBefore_ = module_->spectrum.filePath;
    restorable_.reset();
    if (module_->notice.before)
        restorable_ = module_->notice.before->spectrum.counts;
    regionsBefore_ = module_->peakArea.fields.bounds.shown;
    inputsBefore_ = dialogs_.inputs;
    dialogs_.forget();
    effects_ = Nothing;
    leafed_ = false;
    modalActs_ = 0;
    perform();
    for (const std::string& message : dialogs_.messages)
        journal_.note("  message: " + message);
    faulted_ = told(faultStart);
    cutShort_ = faulted_ || told("File does not read.");
    // By a key, an item of a menu or a button.
    leafed_ = leafed_ || (dialogs_.opened.empty() &&
                          (module_->spectrum.filePath != pathBefore_ || isRestored()));
    opened_ = leafed_ || !dialogs_.opened.empty();
    return form2_->isVisible() ? holds() : leftProperly();
}

bool Walk::require(bool condition, const char* what) {
    if (condition)
        return true;
    std::string values = "  cursor, start, end, width, channels:";
    const ViewState& view = module_->view;
    for (const int value : {view.cursorCh, view.viewStartCh, view.viewEndCh, view.viewWidth,
                            module_->spectrum.channelCount})
        values += " " + std::to_string(value);
    journal_.note(values);
    journal_.tell(what);
    return false;
}

bool Walk::isRestored() const {
    return restorable_ && !module_->notice.before &&
           std::ranges::equal(module_->spectrum.counts, *restorable_);
}

bool Walk::told(std::string_view start) const {
    return std::ranges::any_of(dialogs_.messages,
                               [start](const auto& text) { return text.starts_with(start); });
}

bool Walk::holds() {
    if (cutShort_ || leafed_)
        statusStale_ = true;
    else if (promised(Redraws) || (opened_ && !leafed_))
        statusStale_ = false;
    return require(faulted_ || !promised(Faults), "a fault that is not shown") && stateHolds() &&
           windowHolds() && captionHolds() && faultsHold() && (cutShort_ || promisesHold()) &&
           (!faulted_ || usableAfterFault());
}

bool Walk::stateHolds() {
    const ViewState& view = module_->view;
    const Settings& settings = module_->settings;
    const PeakAreaState& area = module_->peakArea;
    const int channels = module_->spectrum.channelCount;
    const auto within = [](int value, int least, int most) {
        return value >= least && value <= most;
    };
    ordinary_ =
        ((opened_ && !leafed_ && !cutShort_) || ordinary_) && within(channels, 64, maxChannels);
    return require(within(view.yScaleExp, 2, 21), "the full scale") &&
           require(view.yScaleFactor == 1200.0F / std::exp2(static_cast<float>(view.yScaleExp)),
                   "the scale factor") &&
           require(view.viewStartCh >= 0, "the first channel shown") &&
           require(view.viewWidth >= 64 || !ordinary_, "the width") &&
           require(within(settings.peakSetCount, 0, 128), "the set count") &&
           require(within(area.currentSet, 0, 128), "the current set") &&
           require(within(area.focusedField, 0, 6), "the bound that is next") &&
           require(!settings.saveAsDir.starts_with('?') && !settings.marigoldDir.starts_with('?'),
                   "the mark of a folder being chosen") &&
           require(settings.saveAsDir.empty() || files_.holds(settings.saveAsDir),
                   "the folder for results");
}

bool Walk::windowHolds() {
    const QImage& picture = form2_->picture();
    const QSize dots = form2_->plotArea->size() * form2_->plotArea->devicePixelRatioF();
    return require(form2_->isEnabled(), "the main window takes no input") &&
           require(QApplication::overrideCursor() == nullptr, "an hourglass that stays") &&
           require(QApplication::activeModalWidget() == nullptr, "a modal window that stays") &&
           require(!picture.isNull() && picture.size() == dots, "the picture of the plot") &&
           require(form2_->lowerScaleButton->isVisible() ==
                       (module_->view.linLogMode == CountAxis::Linear),
                   "the buttons of the full scale");
}

// An opened file names the window; nothing else does.
bool Walk::captionHolds() {
    const QString caption = form2_->windowTitle();
    const std::string& path = leafed_ ? module_->spectrum.filePath : dialogs_.opened;
    const bool named = opened_ && caption == QFile::decodeName(path.c_str()) +
                                                 QStringLiteral(" ... ") + baseCaption();
    const bool kept = caption == captionBefore_;
    // Leafing may come to the end of the folder, or to a file that is refused.
    const bool mustName = opened_ && !leafed_ && !cutShort_;
    return require(mustName ? named : kept || (named && (faulted_ || leafed_)), "the caption");
}

// A fault has a reason: a number that leaves its range, a file, a place to save in.
bool Walk::faultsHold() {
    const bool measured = regionsBefore_ || module_->peakArea.fields.bounds.shown;
    const bool typed = dialogs_.inputs > inputsBefore_;
    const std::pair<const char*, bool> reasons[] = {{"482'", true},  // the walk's own
                                                    {"6'", true},
                                                    {"5'", measured || typed},
                                                    {"9'", opened_ || measured || !ordinary_},
                                                    {"11'", measured || !ordinary_},
                                                    {"53'", opened_},
                                                    {"62'", opened_},
                                                    {"70'", opened_ || dialogs_.wrote},
                                                    {"75'", opened_ || dialogs_.wrote},
                                                    {"76'", opened_ || dialogs_.wrote}};
    return std::ranges::all_of(dialogs_.messages, [&](std::string_view message) {
        if (!message.starts_with(faultStart))
            return true;
        message.remove_prefix(faultStart.size());
        const auto explains = [message](const auto& reason) {
            return reason.second && message.starts_with(reason.first);
        };
        return require(std::ranges::any_of(reasons, explains), "a fault without a reason");
    });
}

bool Walk::promisesHold() {
    const ViewState& view = module_->view;
    const int channels = module_->spectrum.channelCount;
    const auto statusHolds = [&] {
        return statusStale_ || !isShown(view, view.cursorCh) ||
               form2_->statusLine->text() ==
                   toWindow(statusLine(module_->spectrum, module_->derived, view.cursorCh));
    };
    return require(promised(MovesCursor) || view.cursorCh == viewBefore_.cursorCh,
                   "the cursor has moved") &&
           require(!promised(CursorFromZero) || view.cursorCh >= std::min(channels, 0),
                   "the cursor is too low") &&
           require(!promised(CursorToCount) || view.cursorCh <= channels,
                   "the cursor is too high") &&
           require(!promised(FocusesPlot) || form2_->focusWidget() == form2_->plotArea,
                   "the plot has lost the keys") &&
           require(opened_ || std::ranges::equal(module_->spectrum.counts, countsBefore_),
                   "the counts have changed") &&
           require(statusHolds(), "the status line");
}

// Whatever went wrong, the next key is obeyed.
bool Walk::usableAfterFault() {
    const int before = dialogs_.inputs;
    press(*form2_->plotArea, Qt::Key_F1);
    settle();
    return require(dialogs_.inputs > before, "a key after a fault is not obeyed");
}

// The window was closed: what was saved is what a new start finds.
bool Walk::leftProperly() {
    const auto again = std::make_unique<Module1>();
    startModule1(*again, files_.settingsFolder());
    const Settings& saved = module_->settings;
    const Settings& read = again->settings;
    bool sameSets = saved.peakSetCount == read.peakSetCount;
    for (int i = 0; i < saved.peakSetCount; ++i)
        sameSets = sameSets && saved.peakSets[i].pkLow == read.peakSets[i].pkLow &&
                   saved.peakSets[i].name == read.peakSets[i].name;
    if (!require(sameSets, "the data sets read back") ||
        !require(saved.lastDirectory == read.lastDirectory && saved.saveAsDir == read.saveAsDir &&
                     saved.marigoldDir == read.marigoldDir &&
                     std::ranges::equal(saved.windowPlacement, read.windowPlacement),
                 "the settings read back"))
        return false;
    if (random_.oneIn(3))
        files_.damageSettings();
    start();
    return stateHolds() && windowHolds();
}

}  // namespace kestrel::walk
