// What the peak search finds and what it takes for a peak, in made spectra whose truth is known:
// tables of doublets, of edges and steps, and of flat backgrounds.
// Usage: peak_tables

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include "make_samples/spectrum_maker.h"
#include "spectrum/peak_search.h"

namespace {

using kestrel::FoundPeak;
namespace samples = kestrel::samples;

constexpr std::int16_t channels = 4096;
constexpr int spacing = 100;
constexpr int placesEach = channels / spacing - 2;
constexpr std::uint64_t spectra = 10;
constexpr double fwhm = 4;

double placeOf(int i) {
    return spacing * (i + 1) + 0.5 + 0.37 * i - std::floor(0.37 * i);
}

samples::PeakPlan planOf(double background) {
    return {.channelCount = channels,
            .calibration = {0.0, 1.0, 0.0},
            .resolution = {fwhm * fwhm, 0.0},
            .background = background};
}

bool marked(const std::vector<FoundPeak>& peaks, double channel, double within) {
    return std::ranges::any_of(
        peaks, [&](const FoundPeak& peak) { return std::fabs(peak.centre - channel) <= within; });
}

// Standard deviations that the smaller line's highest channel stands above the deepest one between
// the lines, without noise.
double valleyOf(double counts, double ratio, double distance) {
    samples::PeakPlan plan = planOf(100);
    plan.peaks = {{1000, counts}, {1000 + distance, counts * ratio}};
    const std::vector<double> expected = samples::expectedPeaks(plan);
    const auto top = static_cast<std::ptrdiff_t>(std::lround(1000 + distance));
    const double valley = *std::min_element(expected.begin() + 1000, expected.begin() + top + 1);
    const double height = *std::max_element(expected.begin() + top - 1, expected.begin() + top + 2);
    const double edge = expected[static_cast<std::size_t>(top - 2)];
    return height > edge ? (height - valley) / std::sqrt(height + valley) : 0;
}

double shareFound(double counts, double ratio, double distance) {
    samples::PeakPlan plan = planOf(100);
    for (int i = 0; i < placesEach; ++i) {
        plan.peaks.push_back({placeOf(i), counts});
        plan.peaks.push_back({placeOf(i) + distance, counts * ratio});
    }
    int found = 0;
    for (std::uint64_t seed = 1; seed <= spectra; ++seed) {
        const auto peaks = kestrel::findPeaks(samples::makePeaks(plan, seed));
        for (int i = 0; i < placesEach; ++i)
            found += marked(peaks, placeOf(i), 1.5) && marked(peaks, placeOf(i) + distance, 2);
    }
    return found / static_cast<double>(placesEach * spectra);
}

void printDoublets(double counts) {
    const double distances[] = {1.4, 1.6, 1.8, 2.0, 2.2, 2.5, 3.0};
    std::printf(
        "\nDoublets: lines of 4 channels, %.0f counts in the larger. Per cent of %d "
        "where both are found;\nin brackets the standard deviations of the valley.\n\n"
        "| ratio \\ distance, widths |",
        counts, static_cast<int>(placesEach * spectra));
    for (const double distance : distances)
        std::printf(" %.1f |", distance);
    std::printf("\n|---|---|---|---|---|---|---|---|\n");
    for (const double ratio : {1.0, 0.3, 0.1, 0.05}) {
        std::printf("| %.2f |", ratio);
        for (const double distance : distances)
            std::printf(" %.0f (%.0f) |", 100 * shareFound(counts, ratio, distance * fwhm),
                        valleyOf(counts, ratio, distance * fwhm));
        std::printf("\n");
    }
}

struct Edge {
    const char* name;
    double width;                          // of lines, in channels
    std::function<double(double)> height;  // by the channels behind the edge
};

double falling(double x, double sigma) {
    return 0.5 * std::erfc(x / (sigma * std::sqrt(2.0)));
}

const Edge edges[] = {
    {"step from 0", 4, [](double x) { return x < 0 ? 0.0 : 1.0; }},
    {"step to 0", 4, [](double x) { return x < 0 ? 1.0 : 0.0; }},
    {"step down by a third", 4, [](double x) { return x < 0 ? 1.0 : 0.67; }},
    {"discriminator, 3 channels", 4, [](double x) { return falling(-x, 1.5); }},
    {"Compton edge, germanium", 4, [](double x) { return 0.3 + 0.7 * falling(x, 4); }},
    {"Compton edge, iodide", 32, [](double x) { return 0.2 + 0.8 * falling(x, 20); }},
    {"backscatter, iodide", 32, [](double x) { return 0.5 + 0.5 * falling(-x, 30); }},
};

// Marks within ten line widths of the edge that are not the line's, a spectrum.
double falseMarks(const Edge& edge, double level, double lineAt) {
    const auto centre = channels / 2;
    samples::PeakPlan plan = planOf(0);
    plan.resolution = {edge.width * edge.width, 0.0};
    plan.peaks = {{500.0, 30 * level * edge.width}, {3300.0, 30 * level * edge.width}};
    if (lineAt != 0)
        plan.peaks.push_back({centre + lineAt * edge.width, 3 * level * edge.width});
    std::vector<double> expected = samples::expectedPeaks(plan);
    for (int k = 0; k < channels; ++k)
        expected[static_cast<std::size_t>(k)] += level * edge.height(k - centre);
    int marks = 0;
    for (std::uint64_t seed = 1; seed <= 10 * spectra; ++seed)
        for (const FoundPeak& peak : kestrel::findPeaks(samples::drawCounts(expected, seed)))
            marks += std::abs(peak.centre - centre) < 10 * edge.width &&
                     (lineAt == 0 ||
                      std::fabs(peak.centre - centre - lineAt * edge.width) > 0.6 * edge.width);
    return marks / static_cast<double>(10 * spectra);
}

void printEdges() {
    std::printf(
        "\nEdges: false marks a spectrum, by the line beside the edge (distance in widths; "
        "none: alone)\n\n"
        "| edge, level | none | -4 | -3 | -2 | 1.5 | 2 | 3 | 4 |\n"
        "|---|---|---|---|---|---|---|---|---|\n");
    for (const Edge& edge : edges)
        for (const double level : {100.0, 1000.0, 10000.0}) {
            std::printf("| %s, %.0f |", edge.name, level);
            for (const double lineAt : {0.0, -4.0, -3.0, -2.0, 1.5, 2.0, 3.0, 4.0})
                std::printf(" %.2f |", falseMarks(edge, level, lineAt));
            std::printf("\n");
        }
}

void printFlatBackgrounds() {
    std::printf("\nFlat backgrounds of 4096 channels: false marks a spectrum\n\n| counts |");
    const double levels[] = {0.1, 1, 10, 100, 1000, 1e4, 1e5};
    for (const double level : levels)
        std::printf(" %g |", level);
    std::printf("\n|---|---|---|---|---|---|---|---|\n| marks |");
    for (const double level : levels) {
        std::size_t marks = 0;
        for (std::uint64_t seed = 1; seed <= 20 * spectra; ++seed)
            marks += kestrel::findPeaks(samples::makePeaks(planOf(level), seed)).size();
        std::printf(" %.3f |", static_cast<double>(marks) / static_cast<double>(20 * spectra));
    }
    std::printf("\n");
}

}  // namespace

int main() {
    printDoublets(200000);
    printDoublets(2000);
    printEdges();
    printFlatBackgrounds();
}
