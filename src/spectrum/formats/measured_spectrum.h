// A spectrum as a file of an exchange format tells it, before it becomes the loaded one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// Far more than any analyser has; a file that declares more is refused before memory is asked for.
inline constexpr std::size_t mostFileChannels = 131072;
inline constexpr std::size_t mostFileSpectra = 10000;
// Of all spectra of a file together: 64 MB of counts.
inline constexpr std::size_t mostFileCounts = std::size_t{1} << 23U;
inline constexpr std::uint64_t largestExchangeFile = std::uint64_t{64} << 20U;

// As written in the file; no format but N42 tells the zone.
struct LocalTime {
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    friend bool operator==(const LocalTime&, const LocalTime&) = default;
};

struct EnergyPoint {
    double channel = 0;
    double energy = 0;  // keV
};

struct MeasuredSpectrum {
    std::string name;   // tells it from the others of its file
    std::string title;  // becomes the comment
    std::string detector;
    std::vector<double> counts;  // of the channels from 0 on
    std::optional<double> liveSeconds;
    std::optional<double> realSeconds;
    std::optional<LocalTime> start;
    // Energy in keV is the sum of coefficients[k] * channel^k; empty: not calibrated so.
    std::vector<double> coefficients;
    // Where the file gives energies of channels instead.
    std::vector<EnergyPoint> energies;
    std::vector<NamedValue> details;   // what the loaded spectrum has no field for
    std::vector<std::string> notices;  // what a user must know of the reading, as sentences
    bool measured = true;              // not a calibration, a sum or the like
};

// The spectra of a file that holds one, without a copy of it.
std::vector<MeasuredSpectrum> asOnly(MeasuredSpectrum spectrum);

// The file is not what its format asks for. The text says what was found and where.
class FormatError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// Where in a file something stands.
struct FilePlace {
    std::size_t line = 0;        // counted from 1; 0 where it is no matter of lines
    std::string_view part = {};  // as "$DATA: "
    // "Line 14: $DATA: "
    std::string text() const;
};

// A number of channels that a file promises. Faults: FormatError outside 1 to mostFileChannels.
std::size_t checkedChannelCount(double channels, const FilePlace& place);

}  // namespace kestrel
