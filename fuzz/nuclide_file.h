// A file of the bytes under test, in a folder of its own.
#pragma once

#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kestrel::fuzz {

// Folder of this process's files; gone when the process ends.
class Folder {
  public:
    Folder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "kestrel-fuzz-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;

    const std::string& path() const { return path_; }
    std::string write(const std::string& name, std::string_view bytes) const {
        const std::string path = path_ + "/" + name;
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }

  private:
    std::string path_;
};

inline std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

}  // namespace kestrel::fuzz
