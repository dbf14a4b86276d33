// The open command: the formats that the open dialog offers, and the road from a chosen file to a
// loaded spectrum.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/dialogs.h"
#include "spectrum/notice.h"

namespace kestrel {

// Everything that opening a file fills. The notice goes with a file that opens well; one that is
// refused or fails leaves it with what was there before.
struct OpenTarget {
    Spectrum& spectrum;
    DerivedArrays& derived;
    std::vector<std::string>& headerLines;
    Notice& notice;
    CalibrationChoice calibrationChoice = {};
};

enum class OpenResult { Cancelled, Refused, Loaded };

// Asks for a file and reads it. `lastDirectory` and `lastFilterIndex` say where the dialog starts
// and are updated from it, also when it is cancelled. A refusal has been shown to the user.
OpenResult openSpectrumFile(const OpenTarget& target, std::string& lastDirectory,
                            int& lastFilterIndex, Dialogs& dialogs);

// Opens the file at a full path, handed over from outside, as if it had been chosen in the dialog
// with the filter that its name calls for; where two formats share the ending, the text in the file
// decides. Any other name is refused with a message, and nothing changes. Faults: those of
// readSpectrumByFormat; those of InputFile.
OpenResult openSpectrumPath(const std::string& path, const OpenTarget& target,
                            std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs);

// What follows the reading, whatever the format: the calibration that the user wants or, where the
// file tells none, has; the channel arrays, and the header lines. Faults: those of
// computeDerivedArrays.
void finishOpening(const OpenTarget& target, bool tellsCalibration);

std::shared_ptr<const OpenedSpectrum> copyOf(const OpenTarget& target);
// All but the notice.
void bringBack(const OpenedSpectrum& opened, const OpenTarget& target);

// Brings back what the notice keeps, and empties it. Without anything kept it does nothing.
void restoreBefore(const OpenTarget& target);

// Reads `spectrum.filePath` with the reader of a filter entry (counted from 1), and derives the
// channel arrays and the header lines. False, after a message, when the name lacks the entry's
// extension or the file is not of its format. Faults: those of the readers and of
// computeDerivedArrays.
bool readSpectrumByFormat(int filterIndex, const OpenTarget& target, Dialogs& dialogs);

}  // namespace kestrel
