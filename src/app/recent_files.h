// The files that were opened last, for the menu that opens one of them again.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kestrel {

inline constexpr std::size_t mostRecentFiles = 10;

// Puts a file before the others, each of which stays once, and drops what is too many.
void rememberFile(std::vector<std::string>& recent, const std::string& path);

// An item of the menu.
struct RecentFile {
    std::string path;
    bool isThere = false;
};
// Those of full paths, at most mostRecentFiles.
std::vector<RecentFile> recentFiles(const std::vector<std::string>& recent);

}  // namespace kestrel
