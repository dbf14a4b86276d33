#include "app/places.h"

#include <array>
#include <filesystem>
#include <system_error>

namespace kestrel {
namespace {

namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const char* jetReaderName = "kestrel-mdb2sql.exe";
#else
constexpr const char* jetReaderName = "kestrel-mdb2sql";
#endif

// The first of the candidates at which there is something, else the first of them.
template <std::size_t N>
fs::path firstThere(const std::array<fs::path, N>& candidates) {
    std::error_code ignored;
    for (const fs::path& candidate : candidates) {
        if (fs::exists(candidate, ignored))
            return candidate;
    }
    return candidates.front();
}

}  // namespace

Places findPlaces(const std::string& programFolder) {
    const fs::path program = programFolder;
    // A relative place would be one below the current folder, where anybody's files may lie.
    if (!program.is_absolute())
        return {};
    const fs::path prefix = program.parent_path();
    const std::array data = {prefix / "share" / "kestrel" / "nuc2k.mdb",
                             prefix / "data" / "nuc2k.mdb"};
    const std::array reader = {prefix / "libexec" / "kestrel" / jetReaderName,
                               program / jetReaderName};
    return {firstThere(data).parent_path().string(), firstThere(reader).string()};
}

Places findPlaces() {
    std::error_code ignored;
    return findPlaces(fs::read_symlink("/proc/self/exe", ignored).parent_path().string());
}

}  // namespace kestrel
