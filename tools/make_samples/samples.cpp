#include "make_samples/samples.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <memory>
#include <span>

#include "make_samples/spectrum_maker.h"
#include "make_samples/text_writers.h"
#include "spectrum/formats/chn_writer.h"

namespace kestrel::samples {
namespace {

struct Labels {
    const char* comment;
    const char* startDate;
    const char* startTime;
    std::int32_t liveSeconds;
    std::int32_t realSeconds;
};

std::unique_ptr<Spectrum> record(std::span<const std::int32_t> counts,
                                 const Calibration& calibration, const Labels& labels) {
    auto spectrum = std::make_unique<Spectrum>();
    spectrum->mcaNumber = 1;
    spectrum->segmentNumber = 1;
    spectrum->channelCount = static_cast<std::int16_t>(counts.size());
    std::ranges::copy(counts, spectrum->counts.begin());
    spectrum->liveTime = Ticks::ofSeconds(labels.liveSeconds);
    spectrum->realTime = Ticks::ofSeconds(labels.realSeconds);
    spectrum->startDate.assign(labels.startDate);
    spectrum->startTime.assign(labels.startTime);
    spectrum->comment.assign(labels.comment);
    spectrum->chnTrailer.detector.assign("HPGe, coaxial, 1.8 keV at 1332 keV");
    spectrum->calCurrent = calibration;
    return spectrum;
}

std::unique_ptr<Spectrum> threeNuclides(std::int16_t channelCount, const Calibration& calibration,
                                        std::uint64_t seed) {
    const MeasurementPlan plan{
        .channelCount = channelCount,
        .calibration = calibration,
        .liveSeconds = 600,
        .sources = {{europium152(), 60}, {cobalt60(), 8}, {caesium137(), 20}},
    };
    const Labels labels{"Eu-152 + Co-60 + Cs-137, point sources at 25 cm", "16NOV261", "101530",
                        600, 613};
    return record(makeMeasurement(plan, seed), plan.calibration, labels);
}

std::string environmental() {
    const MeasurementPlan plan{
        .channelCount = 8192,
        .calibration = {-0.212, 0.34962, 3.1e-8},
        .liveSeconds = 72000,
        .background = 0.027,
    };
    const Labels labels{"Natural background, lead shield closed", "17NOV261", "173000", 72000,
                        72009};
    return chnFile(*record(makeMeasurement(plan, 3), plan.calibration, labels),
                   WrittenChn::Extended);
}

std::string empty() {
    const Labels labels{"Nothing counted", "16NOV261", "095900", 10, 10};
    return chnFile(*record(std::vector<std::int32_t>(4096), {-0.35F, 0.4995F, 2e-8F}, labels),
                   WrittenChn::Trailered);
}

std::string trailered(const Spectrum& spectrum) {
    return chnFile(spectrum, WrittenChn::Trailered);
}

constexpr auto writers = std::to_array<SampleWriter>({
    {FormatId::Chn, ".chn", trailered},
    {FormatId::WinOxford, "-windows.asc", winOxfordFile},
    {FormatId::DosOxford, "-dos.asc", dosOxfordFile},
    {FormatId::Canberra35, "-series35.txt", canberra35File},
    {FormatId::NaigE560, "-e560.txt", naigE560File},
});

}  // namespace

std::span<const SampleWriter> sampleWriters() {
    return writers;
}

std::string commonSample(const SampleWriter& writer) {
    return std::string("eu152-co60-cs137-4096") + writer.nameEnd;
}

// The calibrations are floats, as the files of kind 3 hold them: peaks must lie where those say.
std::vector<SampleFile> sampleFiles() {
    const auto common = threeNuclides(4096, {-0.35F, 0.4995F, 2e-8F}, 1);
    std::vector<SampleFile> files;
    files.reserve(std::size(writers));
    for (const SampleWriter& writer : writers)
        files.push_back({commonSample(writer), writer.write(*common)});
    const SampleFile others[] = {
        {"eu152-co60-cs137-16384.chn",
         trailered(*threeNuclides(16384, {-0.35F, 0.124875F, 1.25e-9F}, 2))},
        {"environmental-8192.chn", environmental()},
        {"eu152-co60-cs137-1024.chn",
         chnFile(*threeNuclides(1024, {-0.35F, 1.5F, 0.0F}, 4), WrittenChn::Plain)},
        {"empty-4096.chn", empty()},
    };
    files.insert(files.end(), std::begin(others), std::end(others));
    return files;
}

}  // namespace kestrel::samples
