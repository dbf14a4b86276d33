#include "view/second_spectrum.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/open_any.h"

namespace kestrel {

OpenResult openSecond(Comparison& comparison, const OpenTarget& first, std::string& lastDirectory,
                      int& lastFilterIndex, Dialogs& dialogs) {
    const auto opened = std::make_shared<OpenedSpectrum>();
    Notice notice;
    const OpenResult result = openAnySpectrum(
        {opened->spectrum, opened->derived, opened->headerLines, notice, first.calibrationChoice},
        lastDirectory, lastFilterIndex, dialogs, "Open Second");
    if (result == OpenResult::Loaded) {
        comparison.second = opened;
        comparison.notice = notice;
        updateComparison(comparison, first.spectrum);
    }
    return result;
}

void swapSpectra(Comparison& comparison, const OpenTarget& first) {
    if (comparison.second == nullptr)
        return;
    const auto before = copyOf(first);
    bringBack(*comparison.second, first);
    comparison.second = before;
    std::swap(comparison.notice, first.notice);
    updateComparison(comparison, first.spectrum);
}

void removeSecond(Comparison& comparison) {
    comparison.second.reset();
    comparison.notice = {};
    comparison.difference = false;
}

namespace {

std::string factorText(const std::optional<double>& factor) {
    if (!factor)
        return "not scaled";
    return "x " + formatNumber(*factor, *factor < 0.01 ? "0.000E+00" : "0.0000");
}

std::string differenceText(const Difference& difference) {
    return "difference: " + formatNumber(difference.counts, "0.0") + " +- " +
           formatNumber(difference.error, "0.0") + " (" +
           formatNumber(difference.deviations(), "0.0") + " sd)";
}

}  // namespace

std::string secondLine(const Comparison& comparison, const Spectrum& first, const ViewState& view) {
    if (comparison.second == nullptr)
        return {};
    const SpectrumPair pair = pairOf(comparison, first);
    const auto factor = factorOf(comparison, first, view.viewStartCh, view.viewEndCh);
    const auto channel = static_cast<std::size_t>(view.cursorCh);
    const auto& counts = comparison.onFirst.counts;
    const std::filesystem::path path = comparison.second->spectrum.filePath;
    return "Second " + factorText(factor) +
           "   c: " + formatNumber(channel < counts.size() ? counts[channel] : 0, "0.0") + "   " +
           differenceText(differenceAt(pair, factor.value_or(1), view.cursorCh)) + "   " +
           withoutControls(path.filename().string());
}

}  // namespace kestrel
