#include "spectrum/file_name.h"

#include <filesystem>

namespace kestrel {

std::string baseName(const Spectrum& spectrum) {
    const std::string name = std::filesystem::path(spectrum.filePath).filename().string();
    return name.substr(0, name.rfind('.'));
}

}  // namespace kestrel
