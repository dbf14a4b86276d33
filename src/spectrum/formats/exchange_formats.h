// The table of the exchange formats: the files of today's programs, known by what they contain.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

struct ExchangeFormat {
    const char* name = "";
    const char* pattern = "";
    // Whether a file that begins with these bytes, at most recognitionBytes of them, is of the
    // format.
    bool (*recognises)(std::string_view front) = nullptr;
    std::vector<MeasuredSpectrum> (*read)(std::string_view bytes) = nullptr;
};

inline constexpr std::size_t recognitionBytes = 4096;

// In the order in which they are asked: from the surest mark to the weakest.
std::span<const ExchangeFormat> exchangeFormats();

// Null where no format knows these bytes.
const ExchangeFormat* exchangeFormatOf(std::string_view front);

// The spectra of a file, at least one, with counts that a spectrum can hold: from 0 on and below
// 2^31. Faults: FormatError, with the reason, where no format knows the file or its own refuses it;
// those of InputFile.
std::vector<MeasuredSpectrum> readExchangeFile(InputFile& file);
// The same of a file's bytes.
std::vector<MeasuredSpectrum> readExchangeBytes(std::string_view bytes);
// The same of bytes that are of the format.
std::vector<MeasuredSpectrum> readExchangeAs(const ExchangeFormat& format, std::string_view bytes);

// The spectrum that a user most probably wants: the first that is a measurement.
std::size_t preferredSpectrum(const std::vector<MeasuredSpectrum>& spectra);

}  // namespace kestrel
