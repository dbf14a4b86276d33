#include "spectrum/formats/n42_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <pugixml.hpp>
#include <string>

#include "base/text.h"
#include "spectrum/formats/file_text.h"
#include "spectrum/formats/xml_nodes.h"

namespace kestrel {
namespace {

constexpr std::size_t fewestChannels = 8;
// A node takes 64 bytes of memory.
constexpr std::ptrdiff_t mostMarks = 500000;
constexpr std::size_t longestNumber = 32;
constexpr std::size_t mostInstrumentDetails = 16;

using Node = XmlNode;

// "PT1H2M3.5S", or plain seconds. None for years and months, which have no length.
std::optional<double> seconds(std::string_view text) {
    if (!text.starts_with('P'))
        return numberIn(text);
    double total = 0;
    bool time = false;
    text.remove_prefix(1);
    while (!text.empty()) {
        if (text.front() == 'T') {
            time = true;
            text.remove_prefix(1);
            continue;
        }
        const std::size_t end = text.find_first_not_of("0123456789.");
        const std::optional<double> number = numberIn(text.substr(0, end));
        if (!number || end == std::string_view::npos)
            return std::nullopt;
        const char unit = text[end];
        const bool calendar = unit == 'Y' || (unit == 'M' && !time);
        const bool known = std::string_view("DHMS").find(unit) != std::string_view::npos;
        if (calendar ? *number != 0 : !known)
            return std::nullopt;
        const double length = unit == 'D' ? 86400 : unit == 'H' ? 3600 : unit == 'M' ? 60 : 1;
        total += calendar ? 0 : *number * length;
        text.remove_prefix(end + 1);
    }
    return total;
}

std::optional<double> positiveSeconds(std::string_view text) {
    const std::optional<double> value = seconds(text);
    return value && *value > 0 ? value : std::nullopt;
}

// Behind a zero stands how many zeros there are in all.
std::vector<double> withZeros(const std::vector<double>& packed, const FilePlace& place) {
    std::vector<double> counts;
    for (std::size_t i = 0; i < packed.size(); ++i) {
        if (packed[i] != 0) {
            counts.push_back(packed[i]);
            continue;
        }
        const bool counted = ++i < packed.size();
        const double run = counted ? std::max(packed[i], 1.0) : 1.0;
        counts.resize(checkedChannelCount(static_cast<double>(counts.size()) + run, place), 0.0);
    }
    return counts;
}

std::vector<double> countsOf(const Node& data, const FilePlace& place) {
    std::vector<double> counts;
    std::string_view text(data.child_value());
    if (const Node inner = childOf(data, "Data"))
        text = inner.child_value();
    appendCounts(text, place, counts);
    const std::string_view code = !attributeOf(data, "compressionCode").empty()
                                      ? attributeOf(data, "compressionCode")
                                      : attributeOf(data, "Compression");
    if (containsIgnoringCase(code, "Counted"))
        counts = withZeros(counts, place);
    // The number of the first channel, counted from 1.
    const double before = numberIn(attributeOf(data, "Start")).value_or(1) - 1;
    if (before >= 1) {
        checkedChannelCount(before + static_cast<double>(counts.size()), place);
        counts.insert(counts.begin(), static_cast<std::size_t>(before), 0.0);
    }
    return counts;
}

struct EnergyScale {
    std::vector<double> coefficients;
    std::vector<EnergyPoint> points;
};

double keVIn(std::string_view unit) {
    return equalIgnoringCase(unit, "MeV") ? 1000 : equalIgnoringCase(unit, "eV") ? 0.001 : 1;
}

// The numbers of a calibration: terms, or an energy for each edge of the channels.
std::vector<double> scaledNumbers(const Node& node, std::string_view name, double factor,
                                  std::size_t channels) {
    const std::size_t most = channels + 1;
    const std::string_view text = textOfChild(node, {name}, most * longestNumber);
    std::vector<double> numbers = numbersIn(text).value_or(std::vector<double>());
    numbers.resize(std::min(numbers.size(), most));
    for (double& number : numbers)
        number *= factor;
    return numbers;
}

void takeChannelEdges(const std::vector<double>& energies, EnergyScale& scale) {
    for (std::size_t i = 0; i < energies.size(); ++i)
        scale.points.push_back({.channel = static_cast<double>(i), .energy = energies[i]});
}

// An <EnergyCalibration> of the edition of 2012.
EnergyScale scaleOf2012(const Node& calibration, std::size_t channels) {
    EnergyScale scale;
    scale.coefficients = scaledNumbers(calibration, "CoefficientValues", 1, channels);
    takeChannelEdges(scaledNumbers(calibration, "EnergyBoundaryValues", 1, channels), scale);
    return scale;
}

// A <Calibration> of the edition of 2006; `channels` are those of the full range.
EnergyScale scaleOf2006(const Node& calibration, std::size_t channels) {
    EnergyScale scale;
    const double factor = keVIn(attributeOf(calibration, "EnergyUnits"));
    const Node equation = childOf(calibration, "Equation");
    const std::string_view model = attributeOf(equation, "Model");
    std::vector<double> terms = scaledNumbers(equation, "Coefficients", factor, channels);
    if (model == "LowerChannelEdge") {
        takeChannelEdges(terms, scale);
        return scale;
    }
    if (model == "FullRangeFraction") {
        // Powers of channel / channels; a fifth term, for low energies, is no power.
        terms.resize(std::min<std::size_t>(terms.size(), 4));
        for (std::size_t k = 0; k < terms.size(); ++k)
            terms[k] /= std::pow(static_cast<double>(channels), static_cast<double>(k));
    }
    scale.coefficients = terms;
    return scale;
}

class N42File {
  public:
    explicit N42File(const Node& root) { collect(root); }

    std::vector<MeasuredSpectrum> read() const {
        std::vector<MeasuredSpectrum> spectra;
        std::size_t total = 0;
        for (const Node& node : spectra_) {
            std::optional<MeasuredSpectrum> spectrum = readSpectrum(node);
            if (!spectrum)
                continue;
            total += spectrum->counts.size();
            if (total > mostFileCounts || spectra.size() >= mostFileSpectra)
                throw FormatError("The file holds more than " + std::to_string(mostFileSpectra) +
                                  " spectra or " + std::to_string(mostFileCounts) + " counts.");
            spectra.push_back(std::move(*spectrum));
        }
        if (spectra.empty())
            throw FormatError("There is no spectrum in this file.");
        return spectra;
    }

  private:
    // Without recursion: the depth of a stranger's file is the stranger's choice.
    struct Collector : pugi::xml_tree_walker {
        explicit Collector(N42File& owner) : file(owner) {}
        bool for_each(Node& node) override {
            file.note(node);
            return true;
        }
        N42File& file;
    };

    void collect(Node root) {
        Collector collector(*this);
        root.traverse(collector);
    }

    void note(const Node& node) {
        const std::string_view name = localName(node.name());
        if (name == "Spectrum") {
            spectra_.push_back(node);
        } else if (name == "EnergyCalibration") {
            calibrations_[std::string(attributeOf(node, "id"))] = node;
        } else if (name == "Calibration") {
            if (const std::string_view id = attributeOf(node, "ID"); !id.empty())
                calibrations_[std::string(id)] = node;
        } else if (name == "RadDetectorInformation") {
            detectors_[std::string(attributeOf(node, "id"))] = node;
        } else if (name == "RadInstrumentManufacturerName" || name == "RadInstrumentModelName" ||
                   name == "RadInstrumentIdentifier" || name == "Manufacturer" ||
                   name == "InstrumentModel" || name == "InstrumentID") {
            const std::string_view value = ownText(node);
            if (!value.empty() && instrument_.size() < mostInstrumentDetails)
                instrument_.push_back({std::string(name), std::string(value)});
        }
    }

    // None where it is not one to show.
    std::optional<MeasuredSpectrum> readSpectrum(const Node& node) const {
        const Node data = childOf(node, "ChannelData");
        if (!data || countsOther(node))
            return std::nullopt;
        MeasuredSpectrum spectrum;
        const std::string place = "Spectrum \"" + std::string(attributeOf(node, "id")) + "\": ";
        spectrum.counts = countsOf(data, {.part = place});
        if (spectrum.counts.size() < fewestChannels)
            return std::nullopt;
        takeTimes(node, spectrum);
        takeTexts(node, spectrum);
        const EnergyScale scale = scaleFor(node, spectrum.counts.size());
        spectrum.coefficients = scale.coefficients;
        spectrum.energies = scale.points;
        return spectrum;
    }

    Node detectorOf(const Node& spectrum) const {
        const auto found =
            detectors_.find(std::string(attributeOf(spectrum, "radDetectorInformationReference")));
        return found == detectors_.end() ? Node() : found->second;
    }

    // Of neutrons, or of a counter that has no energies.
    bool countsOther(const Node& spectrum) const {
        const Node detector = detectorOf(spectrum);
        const std::string_view category = textOfChild(detector, {"RadDetectorCategoryCode"});
        const std::string_view kind = textOfChild(detector, {"RadDetectorKindCode"});
        return category == "Neutron" || kind == "GMT" || kind == "GM";
    }

    static void takeTimes(const Node& node, MeasuredSpectrum& spectrum) {
        spectrum.liveSeconds = positiveSeconds(textAround(node, {"LiveTimeDuration", "LiveTime"}));
        spectrum.realSeconds =
            positiveSeconds(textAround(node, {"RealTimeDuration", "RealTime", "SampleRealTime"}));
        spectrum.start = dateIn(textAround(node, {"StartDateTime", "StartTime"}));
    }

    void takeTexts(const Node& node, MeasuredSpectrum& spectrum) const {
        const Node measurement = ancestor(node, "RadMeasurement");
        spectrum.detector = detectorName(node);
        spectrum.title = titleOf(node, measurement);
        const std::string_view kind = measurement
                                          ? textOfChild(measurement, {"MeasurementClassCode"})
                                          : textOfChild(node, {"SourceType"});
        spectrum.measured =
            kind != "IntrinsicActivity" && kind != "Calibration" && !ancestor(node, "DerivedData");
        spectrum.details = instrument_;
        const auto detail = [&](const char* name, std::string_view value) {
            if (!value.empty())
                spectrum.details.push_back({name, std::string(value)});
        };
        detail("Measurement", attributeOf(measurement, "id"));
        detail("Class", kind);
        detail("Detector", spectrum.detector);
        detail("Sample number", attributeOf(node, "SampleNumber"));
        spectrum.name = nameOf(spectrum, attributeOf(measurement, "id"), kind);
    }

    std::string detectorName(const Node& node) const {
        const std::string_view reference = attributeOf(node, "radDetectorInformationReference");
        if (!reference.empty()) {
            const std::string_view name = textOfChild(detectorOf(node), {"RadDetectorName"});
            return std::string(name.empty() ? reference : name);
        }
        for (const Node& around : levelsOf(node)) {
            for (const std::string_view attribute : {"Detector", "Sensor"}) {
                if (const std::string_view name = attributeOf(around, attribute); !name.empty())
                    return std::string(name);
            }
        }
        return {};
    }

    // "Title: ..." of a remark.
    static std::string titleOf(const Node& spectrum, const Node& measurement) {
        constexpr std::string_view label = "Title:";
        for (const Node& node : {spectrum, measurement}) {
            std::size_t looked = 0;
            for (const Node& child : node.children()) {
                const std::string_view text = ownText(child);
                if (isNamed(child, "Remark") && text.starts_with(label))
                    return std::string(trimSpace(text.substr(label.size())));
                if (++looked == mostSiblings)
                    break;
            }
        }
        return {};
    }

    static std::string nameOf(const MeasuredSpectrum& spectrum, std::string_view measurement,
                              std::string_view kind) {
        std::string name = spectrum.title;
        const auto add = [&](std::string_view part) {
            if (!part.empty())
                name.append(name.empty() ? "" : " ").append(part);
        };
        if (name.empty()) {
            add(measurement);
            add(kind);
        }
        add(spectrum.detector);
        return name;
    }

    EnergyScale scaleFor(const Node& node, std::size_t channels) const {
        for (const Node& child : node.children()) {
            const std::string_view type = attributeOf(child, "Type");
            if (isNamed(child, "Calibration") && (type.empty() || type == "Energy"))
                return scaleOf2006(child, channels);
        }
        const std::string_view reference = !attributeOf(node, "energyCalibrationReference").empty()
                                               ? attributeOf(node, "energyCalibrationReference")
                                               : firstOf(attributeOf(node, "CalibrationIDs"));
        auto found = calibrations_.find(std::string(reference));
        if (found == calibrations_.end() && calibrations_.size() == 1)
            found = calibrations_.begin();
        if (found == calibrations_.end())
            return {};
        return isNamed(found->second, "Calibration") ? scaleOf2006(found->second, channels)
                                                     : scaleOf2012(found->second, channels);
    }
    static std::string_view firstOf(std::string_view words) { return takeWord(words); }

    std::vector<Node> spectra_;
    std::map<std::string, Node> calibrations_;
    std::map<std::string, Node> detectors_;
    std::vector<NamedValue> instrument_;
};

constexpr std::array<std::string_view, 2> roots = {"N42InstrumentData", "RadInstrumentData"};

// "Line 214: " of a byte.
std::string placeOf(std::string_view bytes, std::ptrdiff_t offset) {
    const auto end = static_cast<std::size_t>(std::max<std::ptrdiff_t>(offset, 0));
    return "Line " + std::to_string(1 + std::ranges::count(bytes.substr(0, end), '\n')) + ": ";
}

// Names that occur more than once get a number.
void numberNames(std::vector<MeasuredSpectrum>& spectra) {
    std::map<std::string, int> uses;
    for (const MeasuredSpectrum& spectrum : spectra)
        ++uses[spectrum.name];
    for (std::size_t i = 0; i < spectra.size(); ++i) {
        if (uses[spectra[i].name] > 1 || spectra[i].name.empty())
            spectra[i]
                .name.append(spectra[i].name.empty() ? "#" : " #")
                .append(std::to_string(i + 1));
    }
}

}  // namespace

bool looksLikeN42(std::string_view front) {
    const std::string text = textOf(front);
    return trimSpace(text).starts_with('<') &&
           std::ranges::any_of(
               roots, [&](std::string_view root) { return text.find(root) != std::string::npos; });
}

std::vector<MeasuredSpectrum> readN42(std::string_view bytes) {
    const std::string text = textOf(bytes);
    if (std::ranges::count(text, '<') > mostMarks)
        throw FormatError("The XML has more than " + std::to_string(mostMarks) + " elements.");
    pugi::xml_document document;
    const pugi::xml_parse_result result = document.load_buffer(
        text.data(), text.size(), pugi::parse_minimal | pugi::parse_escapes | pugi::parse_cdata,
        pugi::encoding_utf8);
    if (!result)
        throw FormatError(placeOf(text, result.offset) + "This is no XML: " + result.description() +
                          ".");
    std::vector<MeasuredSpectrum> spectra = N42File(document).read();
    numberNames(spectra);
    return spectra;
}

}  // namespace kestrel
