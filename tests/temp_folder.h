// A folder for the files of one test, gone when the test ends, and the bytes of files.
#pragma once

#include <unistd.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace kestrel::test {

inline std::string contentsOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

class TempFolder {
  public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "kestrel-XXXXXX").string();
        path_ = mkdtemp(name.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path() const { return path_.string(); }
    std::string file(std::string_view name) const { return (path_ / name).string(); }
    std::string write(std::string_view name, std::string_view contents) const {
        std::ofstream(file(name), std::ios::binary) << contents;
        return file(name);
    }
    std::string read(std::string_view name) const { return contentsOf(file(name)); }
    bool has(std::string_view name) const { return std::filesystem::exists(path_ / name); }
    std::size_t entries() const {
        return static_cast<std::size_t>(
            std::distance(std::filesystem::directory_iterator(path_), {}));
    }

  private:
    std::filesystem::path path_;
};

}  // namespace kestrel::test
