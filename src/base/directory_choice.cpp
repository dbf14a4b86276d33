#include "base/directory_choice.h"

#include <filesystem>
#include <system_error>

#include "base/input_file.h"

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr char mark = '?';

bool isMarked(const std::string& setting) {
    return setting.starts_with(mark);
}

}  // namespace

bool chooseDirectory(std::string& setting, const std::function<void()>& chooser) {
    const std::string copy = setting;
    setting.insert(setting.begin(), mark);
    chooser();
    if (!isMarked(setting))
        return true;
    setting = copy;
    return false;
}

bool chooseDirectoryOrCurrent(std::string& setting, const std::function<void()>& chooser) {
    if (!setting.empty())
        return chooseDirectory(setting, chooser);
    setting = currentDirectory();
    const bool chosen = chooseDirectory(setting, chooser);
    if (!chosen)
        setting.clear();
    return chosen;
}

std::string startDirectory(const ChosenDirectories& directories) {
    for (const std::string* setting : {&directories.marigoldDir, &directories.saveAsDir}) {
        if (isMarked(*setting) && setting->size() > 1)
            return setting->substr(1);
        if (isMarked(*setting))
            break;
    }
    return currentDirectory();
}

void acceptDirectory(const ChosenDirectories& directories, const std::string& path) {
    for (std::string* setting : {&directories.marigoldDir, &directories.saveAsDir}) {
        if (isMarked(*setting))
            *setting = path;
    }
}

std::string nearestDirectory(const std::string& path) {
    std::error_code failed;
    fs::path folder = fs::absolute(path, failed).lexically_normal();
    while (!fs::is_directory(folder, failed) && folder.has_relative_path())
        folder = folder.parent_path();
    // A relative path has no folder above it once the current directory is gone.
    return folder.is_absolute() ? folder.string() : fs::path("/").string();
}

}  // namespace kestrel
