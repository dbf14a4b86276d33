// One step of the walk, and what must hold after it.

#include "walk/walk.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include <QApplication>
#include <QFile>
#include <QTest>

#include "base/qt/text_codec.h"
#include "view/status_text.h"

namespace kestrel::walk {
namespace {

constexpr int maxChannels = 17001;
constexpr std::string_view faultStart = "Run-time error '";
constexpr std::string_view refusalStart = "File does not read.";

}  // namespace

bool Walk::step() {
    viewBefore_ = module_->view;
    captionBefore_ = form2_->windowTitle();
    if (!dialogs_.opened.empty())
        countsBefore_ = module_->spectrum.counts;
    dialogs_.forget();
    regionsBefore_ = module_->peakArea.fields.bounds.shown;
    inputsBefore_ = dialogs_.inputs;
    effects_ = Nothing;
    modalActs_ = 0;
    dialogs_.modalsAllowed = true;

    int chance = random_.below(
        std::accumulate(actions().begin(), actions().end(), 0,
                        [](int sum, const Action& action) { return sum + action.weight; }));
    auto action = actions().begin();
    for (; chance >= action->weight; ++action)
        chance -= action->weight;
    perform(*action);
    if (QWidget* menu = QApplication::activePopupWidget())
        menu->close();
    for (const std::string& message : dialogs_.messages)
        journal_.note("  message: " + message);
    return form2_->isVisible() ? holds() : leftProperly();
}

bool Walk::require(bool condition, const char* what) {
    if (condition)
        return true;
    const ViewState& view = module_->view;
    journal_.note("  cursor, start, end, width, channels: " + std::to_string(view.cursorCh) + " " +
                  std::to_string(view.viewStartCh) + " " + std::to_string(view.viewEndCh) + " " +
                  std::to_string(view.viewWidth) + " " +
                  std::to_string(module_->spectrum.channelCount));
    journal_.tell(what);
    return false;
}

bool Walk::faulted() const {
    return std::ranges::any_of(dialogs_.messages,
                               [](const auto& text) { return text.starts_with(faultStart); });
}

bool Walk::refused() const {
    return std::ranges::any_of(dialogs_.messages,
                               [](const auto& text) { return text.starts_with(refusalStart); });
}

bool Walk::holds() {
    const bool cutShort = faulted() || refused();
    if (cutShort)
        statusStale_ = true;
    else if ((effects_ & Redraws) != 0 || !dialogs_.opened.empty())
        statusStale_ = false;
    return require(faulted() || (effects_ & Faults) == 0, "a fault that is not shown") &&
           stateHolds() && windowHolds() && captionHolds() && faultsHold() &&
           (cutShort || promisesHold()) && (!faulted() || usableAfterFault());
}

bool Walk::stateHolds() {
    const ViewState& view = module_->view;
    const int channels = module_->spectrum.channelCount;
    const bool shown = !dialogs_.opened.empty() && !refused() && !faulted();
    ordinary_ = (shown || ordinary_) && channels >= 64 && channels <= maxChannels;
    const Settings& settings = module_->settings;
    return require(view.yScaleExp >= 2 && view.yScaleExp <= 21, "the full scale") &&
           require(view.yScaleFactor == 1200.0F / std::exp2(static_cast<float>(view.yScaleExp)),
                   "the scale factor") &&
           require(view.viewStartCh >= 0, "the first channel shown") &&
           require(view.viewWidth >= 64 || !ordinary_, "the width") &&
           require(settings.peakSetCount >= 0 && settings.peakSetCount <= 128, "the set count") &&
           require(module_->peakArea.currentSet >= 0 && module_->peakArea.currentSet <= 128,
                   "the current set") &&
           require(module_->peakArea.focusedField >= 0 && module_->peakArea.focusedField <= 6,
                   "the bound that is next") &&
           require(!settings.saveAsDir.starts_with('?') && !settings.marigoldDir.starts_with('?'),
                   "the mark of a folder being chosen") &&
           require(settings.saveAsDir.empty() || files_.holds(settings.saveAsDir),
                   "the folder for results");
}

bool Walk::windowHolds() {
    const QImage& picture = form2_->picture();
    const QSize dots = form2_->Picture1->size() * form2_->Picture1->devicePixelRatioF();
    return require(form2_->isEnabled(), "the main window takes no input") &&
           require(QApplication::overrideCursor() == nullptr, "an hourglass that stays") &&
           require(QApplication::activeModalWidget() == nullptr, "a modal window that stays") &&
           require(!picture.isNull() && picture.size() == dots, "the picture of the plot") &&
           require(form2_->Command3->isVisible() == (module_->view.linLogMode == CountAxis::Linear),
                   "the buttons of the full scale");
}

// An opened file names the window; nothing else does.
bool Walk::captionHolds() {
    const QString caption = form2_->windowTitle();
    const QString expected =
        QFile::decodeName(dialogs_.opened.c_str()) + QStringLiteral(" ... ") + baseCaption();
    const bool asked = !dialogs_.opened.empty();
    const bool named = asked && caption == expected;
    const bool kept = caption == captionBefore_;
    return require(asked && !refused() && !faulted() ? named : kept || (named && faulted()),
                   "the caption");
}

// A fault has a reason: a number that leaves its range, a file, a place to save in.
bool Walk::faultsHold() {
    const auto allowed = [this](const std::string& number) {
        const bool opened = !dialogs_.opened.empty();
        const bool measured = regionsBefore_ || module_->peakArea.fields.bounds.shown;
        if (number == "482")
            return true;  // the walk's own
        if (number == "6")
            return true;
        if (number == "5")
            return measured || dialogs_.inputs > inputsBefore_;
        if (number == "9")
            return opened || measured || !ordinary_;
        if (number == "11")
            return measured || !ordinary_;
        if (number == "53" || number == "62")
            return opened;
        if (number == "70" || number == "75" || number == "76")
            return opened || dialogs_.wrote;
        return false;
    };
    return std::ranges::all_of(dialogs_.messages, [&](const std::string& message) {
        if (!message.starts_with(faultStart))
            return true;
        const std::string rest = message.substr(faultStart.size());
        return require(allowed(rest.substr(0, rest.find('\''))), "a fault without a reason");
    });
}

bool Walk::promisesHold() {
    const ViewState& view = module_->view;
    const int channels = module_->spectrum.channelCount;
    const auto promised = [this](unsigned effect) { return (effects_ & effect) != 0; };
    if (!require(promised(MovesCursor) || view.cursorCh == viewBefore_.cursorCh,
                 "the cursor has moved") ||
        !require(!promised(CursorFromZero) || view.cursorCh >= std::min(channels, 0),
                 "the cursor is too low") ||
        !require(!promised(CursorToCount) || view.cursorCh <= channels, "the cursor is too high") ||
        !require(!promised(FocusesPlot) || form2_->focusWidget() == form2_->Picture1,
                 "the plot has lost the keys") ||
        !require(
            !dialogs_.opened.empty() || std::ranges::equal(module_->spectrum.counts, countsBefore_),
            "the counts have changed"))
        return false;
    if (statusStale_ || !isShown(view, view.cursorCh))
        return true;
    const std::string line = statusLine(module_->spectrum, module_->derived, view.cursorCh);
    return require(form2_->Text1->text() == toWindow(line), "the status line");
}

// Whatever went wrong, the next key is obeyed.
bool Walk::usableAfterFault() {
    const int before = dialogs_.inputs;
    QTest::keyClick(form2_->Picture1, Qt::Key_F1);
    settle();
    return require(dialogs_.inputs > before, "a key after a fault is not obeyed");
}

// The window was closed: what was saved is what a new start finds.
bool Walk::leftProperly() {
    const auto again = std::make_unique<Module1>();
    startModule1(*again, files_.settingsFolder());
    const Settings& saved = module_->settings;
    const Settings& read = again->settings;
    const auto sameSets = [&] {
        for (int i = 0; i < saved.peakSetCount; ++i) {
            if (saved.peakSets[i].pkLow != read.peakSets[i].pkLow ||
                saved.peakSets[i].name.view() != read.peakSets[i].name.view())
                return false;
        }
        return saved.peakSetCount == read.peakSetCount;
    };
    if (!require(saved.lastDirectory == read.lastDirectory && saved.saveAsDir == read.saveAsDir &&
                     saved.marigoldDir == read.marigoldDir &&
                     std::ranges::equal(saved.windowPlacement, read.windowPlacement),
                 "the settings read back") ||
        !require(sameSets(), "the data sets read back"))
        return false;
    if (random_.oneIn(3))
        files_.damageSettings();
    start();
    return stateHolds() && windowHolds();
}

}  // namespace kestrel::walk
