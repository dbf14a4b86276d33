// Choosing a folder for a setting. While the chooser is open a "?" in front of a setting says which
// one is being chosen; it never outlives the choice.
#pragma once

#include <functional>
#include <string>

namespace kestrel {

// The settings that the directory chooser serves.
struct ChosenDirectories {
    std::string& marigoldDir;
    std::string& saveAsDir;
};

// For the callers of the chooser: marks `setting`, runs `chooser`, and takes the mark away again.
// False when the user cancelled; the setting is then as it was.
bool chooseDirectory(std::string& setting, const std::function<void()>& chooser);
// The same for a setting that means the current directory while it is empty.
bool chooseDirectoryOrCurrent(std::string& setting, const std::function<void()>& chooser);

// For the chooser: where it starts (the marked setting, else the current directory), and OK, which
// gives every marked setting the path as it stands.
std::string startDirectory(const ChosenDirectories& directories);
void acceptDirectory(const ChosenDirectories& directories, const std::string& path);

// `path`, or the nearest folder above it that exists.
std::string nearestDirectory(const std::string& path);

}  // namespace kestrel
