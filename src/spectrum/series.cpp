#include "spectrum/series.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

#include "base/text.h"
#include "spectrum/formats.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/open_any.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

bool endsLike(const std::string& name, std::string_view pattern) {
    const std::string_view ending = pattern.substr(1);
    return equalIgnoringCase(lastCharacters(name, ending.size()), ending);
}

bool hasSpectrumEnding(const std::string& name) {
    return std::ranges::any_of(
               exchangeFormats(),
               [&](const auto& format) { return endsLike(name, format.pattern); }) ||
           std::ranges::any_of(spectrumFormats(), [&](const auto& format) {
               return format.read != nullptr && !format.refusesAll &&
                      endsLike(name, format.pattern);
           });
}

// Where a name stands: compared byte by byte, a number comes by its length and then by its digits.
// The name itself decides between those that differ in letter case or leading zeros only.
using Place = std::pair<std::string, std::string>;

Place placeOf(const std::string& name) {
    const std::string lower = toLower(name);
    std::string key;
    for (std::size_t i = 0; i < lower.size();) {
        if (!isDigit(lower[i])) {
            key += lower[i++];
            continue;
        }
        i = std::min(lower.find_first_not_of('0', i), lower.size());
        const std::size_t end = std::min(lower.find_first_not_of("0123456789", i), lower.size());
        key += '0';
        key += static_cast<char>(end - i);
        key += lower.substr(i, end - i);
        i = end;
    }
    return {key, name};
}

// What a file that is not taken leaves in the record is undone.
class KeptSpectrum {
  public:
    explicit KeptSpectrum(const OpenTarget& target)
        : target_(target),
          before_(std::make_unique<Spectrum>(target.spectrum)),
          notice_(target.notice) {}
    ~KeptSpectrum() {
        if (before_ == nullptr)
            return;
        target_.spectrum = std::move(*before_);
        target_.notice = std::move(notice_);
    }
    KeptSpectrum(const KeptSpectrum&) = delete;
    KeptSpectrum& operator=(const KeptSpectrum&) = delete;
    void letGo() { before_.reset(); }

  private:
    const OpenTarget& target_;
    std::unique_ptr<Spectrum> before_;
    Notice notice_;
};

}  // namespace

std::string neighbourFile(const std::string& path, Direction direction) {
    const fs::path present(path);
    const Place here = placeOf(present.filename().string());
    const bool next = direction == Direction::Next;
    Place nearest;
    std::error_code failed;
    for (fs::directory_iterator entry(present.parent_path(), failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename().string();
        if (!hasSpectrumEnding(name))
            continue;
        const Place place = placeOf(name);
        const bool beyond = next ? here < place : place < here;
        const bool nearer = nearest.second.empty() || (next ? place < nearest : nearest < place);
        std::error_code unknown;
        if (beyond && nearer && entry->is_regular_file(unknown))
            nearest = place;
    }
    return nearest.second.empty() ? std::string()
                                  : (present.parent_path() / nearest.second).string();
}

OpenResult openNeighbour(Direction direction, std::string& present, const OpenTarget& target,
                         std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    const std::string path = neighbourFile(
        present.empty() ? (fs::path(lastDirectory) / "").string() : present, direction);
    if (path.empty()) {
        dialogs.message({.text = direction == Direction::Next
                                     ? "There is no further spectrum in this folder."
                                     : "There is no earlier spectrum in this folder."});
        return OpenResult::Cancelled;
    }
    present = path;
    KeptSpectrum kept(target);
    const OpenResult result = openAnyPath(path, target, lastDirectory, lastFilterIndex, dialogs);
    if (result == OpenResult::Loaded)
        kept.letGo();
    return result;
}

}  // namespace kestrel
