#include "app/recent_files.h"

#include <filesystem>

#include "base/input_file.h"

namespace kestrel {

void rememberFile(std::vector<std::string>& recent, const std::string& path) {
    std::erase(recent, path);
    recent.insert(recent.begin(), path);
    if (recent.size() > mostRecentFiles)
        recent.resize(mostRecentFiles);
}

std::vector<RecentFile> recentFiles(const std::vector<std::string>& recent) {
    std::vector<RecentFile> files;
    for (const std::string& path : recent) {
        if (files.size() < mostRecentFiles && std::filesystem::path(path).is_absolute())
            files.push_back({path, fileExists(path)});
    }
    return files;
}

}  // namespace kestrel
