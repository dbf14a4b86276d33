// What the writers of all formats take from the loaded spectrum.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "spectrum/formats/measured_spectrum.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The start, with a missing time of the day as midnight. None where it is blank, or no time that
// readers take.
std::optional<LocalTime> writtenStart(const Spectrum& spectrum);
// "2026-11-16", `between`, "12:30:37".
std::string isoTime(const LocalTime& time, char between);

// The calibration in force; none where its energies do not rise over the channels.
std::optional<Calibration> writtenCalibration(const Spectrum& spectrum);

// In seconds, with all digits; "0" for what is below 0.
std::string writtenSeconds(Ticks time);

// Of a channel below channelCount; 0 for what is below 0. Faults: SubscriptOutOfRange.
std::int64_t writtenCount(const Spectrum& spectrum, std::int32_t channel);

// The text without control characters and without blanks at its ends.
std::string writtenText(std::string_view text);

}  // namespace kestrel
