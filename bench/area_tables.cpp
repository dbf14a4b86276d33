// How well peaks are measured in made spectra whose truth is known: pulls of areas and centroids,
// and widths, by counts and background; of lines that the search marks, and of lines that are
// marked where they are, whether they stand out by chance or not.
// Usage: area_tables

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <vector>

#include "analysis/peak_measures.h"
#include "make_samples/spectrum_maker.h"
#include "spectrum/peak_measure.h"

namespace {

using namespace kestrel;

constexpr std::int16_t channels = 4096;
constexpr int spacing = 100;
constexpr int lines = 39;
constexpr double strongArea = 1e5;     // of every 19th line, from which the others have their width
constexpr std::uint64_t spectra = 28;  // 1008 lines of each kind
constexpr double fwhm = 4;

bool isStrong(int line) {
    return line % 19 == 0;
}

double placeOf(int line) {
    return spacing * (line + 1) + 0.37 * line - std::floor(0.37 * line);
}

// Lines of which `channel` lies below: each scatters a step under itself, as wide as it is.
double linesAbove(double channel) {
    constexpr double sigma = fwhm / fwhmOfSigma;
    double above = 0;
    for (int i = 0; i < lines; ++i)
        above += 0.5 * std::erfc((channel - placeOf(i)) / (sigma * std::sqrt(2.0)));
    return above;
}

struct Background {
    const char* name;
    std::function<double(double channel)> at;
};

const Background backgrounds[] = {
    {"flat, 20", [](double) { return 20.0; }},
    {"flat, 200", [](double) { return 200.0; }},
    {"slope, 200 to 36", [](double channel) { return 200 - 0.04 * channel; }},
    {"steps of 40 down to 100", [](double channel) { return 100 + 40 * linesAbove(channel); }},
};

class Pulls {
  public:
    void add(double pull) {
        sum_ += pull;
        squares_ += pull * pull;
        ++count_;
    }
    int count() const { return count_; }
    double mean() const { return sum_ / count_; }
    double spread() const { return std::sqrt(squares_ / count_ - mean() * mean()); }

  private:
    double sum_ = 0;
    double squares_ = 0;
    int count_ = 0;
};

struct Outcome {
    Pulls net;
    Pulls centroid;
    Pulls width;  // relative deviations
    int falseMarks = 0;
};

// -1: no line.
int lineOf(const PeakRecord& peak) {
    const int line = static_cast<int>(std::lround(peak.channel / double{spacing})) - 1;
    const bool near = line >= 0 && line < lines && std::fabs(peak.channel - placeOf(line)) <= fwhm;
    return near ? line : -1;
}

void add(const PeakRecord& peak, double area, Outcome& outcome) {
    const int line = lineOf(peak);
    if (line < 0)
        ++outcome.falseMarks;
    if (line < 0 || isStrong(line))
        return;
    outcome.net.add((peak.net - area) / peak.netError);
    if (peak.centroidError > 0 && peak.areaError > 0)
        outcome.centroid.add((peak.centroid - placeOf(line)) / peak.centroidError);
    outcome.width.add(peak.fwhm / fwhm - 1);
}

// Marks each line at its place, as strong as the search has it at least.
void markLines(DerivedArrays& derived) {
    const auto found = derived.peakSignificance;
    derived.peakSignificance.fill(0);
    for (int i = 0; i < lines; ++i) {
        const auto place = static_cast<int>(std::lround(placeOf(i)));
        double measure = 1.1 * peakCentreMeasure;
        for (int k = place - 4; k <= place + 4; ++k)
            measure = std::max(measure, found[k]);
        derived.peakSignificance[place] = measure;
    }
}

std::vector<double> expectedOf(double area, const Background& background) {
    samples::PeakPlan plan{
        .channelCount = channels, .calibration = {0, 1, 0}, .resolution = {fwhm * fwhm, 0}};
    for (int i = 0; i < lines; ++i)
        plan.peaks.push_back({placeOf(i), isStrong(i) ? std::max(area, strongArea) : area});
    std::vector<double> expected = samples::expectedPeaks(plan);
    for (int k = 0; k < channels; ++k)
        expected[static_cast<std::size_t>(k)] += background.at(k);
    return expected;
}

Outcome outcomeOf(double area, const Background& background, bool markedByHand) {
    const std::vector<double> expected = expectedOf(area, background);
    const auto spectrum = std::make_unique<Spectrum>();
    const auto derived = std::make_unique<DerivedArrays>();
    spectrum->channelCount = channels;
    Outcome outcome;
    for (std::uint64_t seed = 1; seed <= spectra; ++seed) {
        std::ranges::copy(samples::drawCounts(expected, seed), spectrum->counts.begin());
        computeDerivedArrays(*spectrum, *derived);
        if (markedByHand)
            markLines(*derived);
        for (const PeakRecord& peak : measurePeaks(*spectrum, *derived).peaks)
            add(peak, area, outcome);
    }
    return outcome;
}

void print(const Pulls& pulls) {
    if (pulls.count() < 20)
        std::printf(" |");
    else
        std::printf(" %.2f (%.2f) |", pulls.mean(), pulls.spread());
}

void printLine(const Background& background, double area) {
    const Outcome known = outcomeOf(area, background, true);
    const Outcome found = outcomeOf(area, background, false);
    const int all = (lines - 3) * static_cast<int>(spectra);
    std::printf("| %s | %.0f |", background.name, area);
    print(known.net);
    print(known.centroid);
    std::printf(" %.0f | %.2f |", 100.0 * found.net.count() / all,
                found.falseMarks / static_cast<double>(spectra));
    print(found.net);
    print(found.centroid);
    if (found.width.count() > 0)
        std::printf(" %+.1f (%.1f)", 100 * found.width.mean(), 100 * found.width.spread());
    std::printf(" |\n");
}

}  // namespace

int main() {
    std::printf(
        "Mean pulls, in brackets their spread; 1008 lines of 4 channels each.\n\n"
        "| background a channel | counts | area, marked by hand | centroid | found, %% | "
        "false marks a spectrum | area, found | centroid | FWHM off, %% |\n"
        "|---|---|---|---|---|---|---|---|---|\n");
    for (const Background& background : backgrounds)
        for (const double area : {50.0, 100.0, 300.0, 1000.0, 1e4, 1e5, 1e6})
            printLine(background, area);
}
