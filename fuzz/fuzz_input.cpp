#include "fuzz_input.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kestrel::fuzz {
namespace {

namespace fs = std::filesystem;

class Folder {
  public:
    Folder() {
        const fs::path place =
            fs::is_directory("/dev/shm") ? "/dev/shm" : fs::temp_directory_path();
        path_ = (place / ("kestrel-fuzz-" + std::to_string(getpid()))).string();
        fs::create_directory(path_);
    }
    ~Folder() {
        std::error_code ignored;
        fs::remove_all(path_, ignored);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

}  // namespace

const std::string& folder() {
    static const Folder made;
    return made.path();
}

std::string writeFile(std::string_view name, std::string_view contents) {
    std::string path = folder() + "/" + std::string(name);
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    require(file != nullptr);
    require(std::fwrite(contents.data(), 1, contents.size(), file) == contents.size());
    require(std::fclose(file) == 0);
    return path;
}

void require(bool condition) {
    if (!condition)
        std::abort();
}

}  // namespace kestrel::fuzz
