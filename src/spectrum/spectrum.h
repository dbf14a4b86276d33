// The one loaded spectrum, in the fields of a CHN file: every reader translates its format into
// them.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/checked_array.h"
#include "base/fixed_text.h"
#include "base/integers.h"

namespace kestrel {

class InputFile;

// A time in the unit of the formats, ticks of 20 ms.
struct Ticks {
    std::int64_t count = 0;

    static constexpr int perSecond = 50;
    // Rounded to whole ticks. Faults: Overflow beyond 32 bits.
    static Ticks ofSeconds(double seconds) { return {toInt32(seconds * double{perSecond})}; }
    double seconds() const { return static_cast<double>(count) / double{perSecond}; }
    // Rounded. Faults: Overflow.
    std::int32_t wholeSeconds() const { return toInt32(seconds()); }
    friend bool operator==(const Ticks&, const Ticks&) = default;
};

// Energy in keV = A + B * channel + C * channel^2.
struct Calibration {
    double a = 0;
    double b = 0;
    double c = 0;
    friend bool operator==(const Calibration&, const Calibration&) = default;
};

// The calibration in force before any file and any settings say otherwise.
inline constexpr Calibration startCalibration{0.0, 0.5, 0.0};

// What the user has chosen for every file that is opened: its own calibration, or one of the
// user's.
struct CalibrationChoice {
    bool useFileCalibration = true;  // false: calDefault replaces what a file brings
    // Also in force for files that bring none.
    Calibration calDefault = startCalibration;
    friend bool operator==(const CalibrationChoice&, const CalibrationChoice&) = default;
};

// The numbers and texts of the 512-byte trailer of a CHN file of the third kind; the text readers
// keep their calibration and descriptions here as well.
struct ChnTrailer {
    float calA = 0;
    float calB = 0;
    float calC = 0;
    std::array<float, 3> resolution{};  // full width at half maximum; kept, not used
    std::uint8_t detectorLength = 0;
    FixedText<63> detector;
    std::uint8_t sampleLength = 0;
    FixedText<63> sample;

    // The calibration widened to doubles.
    Calibration calibration() const { return {double{calA}, double{calB}, double{calC}}; }
    friend bool operator==(const ChnTrailer&, const ChnTrailer&) = default;
};

// What a CHN file of the second kind carries after its comment.
struct ChnExtension {
    Calibration calibration;
    friend bool operator==(const ChnExtension&, const ChnExtension&) = default;
};

// Something that a file tells and no field holds.
struct NamedValue {
    std::string name;
    std::string value;
    friend bool operator==(const NamedValue&, const NamedValue&) = default;
};

struct Spectrum {
    // Entries from channelCount on hold what an earlier, longer spectrum left: read the counts of a
    // channel that may lie there through countsAt.
    ChannelArray<std::int32_t> counts;
    std::int16_t fileType = 0;  // first word of a CHN file: -1
    std::int16_t mcaNumber = 0;
    std::int16_t segmentNumber = 0;
    std::array<std::uint8_t, 2> startSecondsRaw{};
    Ticks realTime;
    Ticks liveTime;          // as lists and printouts tell it, in whole seconds
    FixedText<8> startDate;  // DDMMMYYc, c the century mark
    FixedText<6> startTime;  // HHMMSS
    std::int16_t channelCount = 16384;
    FixedText<64> comment;
    Calibration calCurrent = startCalibration;
    Calibration calFromFile = startCalibration;
    std::string filePath;
    // Of the file that was opened last, for count rates and the plot. A file that is refused leaves
    // it alone.
    Ticks openedLiveTime;
    ChnExtension chnExtension;
    ChnTrailer chnTrailer;
    std::vector<NamedValue> details;
    // The last NAIG capture that said it holds no spectrum; open until the next one does.
    std::shared_ptr<InputFile> fileLeftOpen;

    // Counts of a channel, 0 from channelCount on. Faults: SubscriptOutOfRange outside 0 .. 17000
    // for a channel below channelCount.
    std::int32_t countsAt(std::int64_t channel) const {
        return channel >= channelCount ? 0 : counts[channel];
    }
    friend bool operator==(const Spectrum&, const Spectrum&) = default;
};

}  // namespace kestrel
