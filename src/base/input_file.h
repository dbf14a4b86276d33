// Reading files: a handle that reads blocks at given places, and a reader of text lines. A file is
// never taken into memory as a whole unless its size has been checked.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kestrel {

class InputFile {
  public:
    // Faults: FileNotFound, PathNotFound (a folder of the path is missing), PathAccess (no
    // permission, or not a regular file: a folder, a pipe, a device).
    explicit InputFile(const std::string& path);

    std::uint64_t size() const { return size_; }
    const std::string& path() const { return path_; }

    // Reads from `offset` on and returns how many bytes there were; fewer than asked for only at
    // the end. Faults: DeviceError.
    std::size_t read(std::uint64_t offset, std::span<std::byte> into);

    // The first bytes of the file, at most `limit` of them.
    std::vector<std::byte> readFront(std::size_t limit);

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
    std::string path_;
    std::uint64_t size_ = 0;
    std::uint64_t position_ = 0;
};

// The lines of a text file in order. CR LF, LF and CR each end a line; the last line needs no end.
class LineReader {
  public:
    // A longer line is cut to this many bytes; the rest of it is skipped.
    static constexpr std::size_t longestLine = 65536;

    // Far more than any spectrum has, and read through in less than a second.
    static constexpr std::uint64_t largestFile = std::uint64_t{256} << 20U;

    // Faults: PathAccess for a larger file.
    explicit LineReader(InputFile& file);

    // The next line, without its end, valid until the next call; false at the end of the file.
    bool next(std::string_view& line);
    // The next line. Faults: InputPastEnd at the end of the file.
    std::string_view require();
    void rewind();
    // Of the line that was delivered last, counted from 1; 0 before the first.
    std::uint64_t lineNumber() const { return lineNumber_; }

  private:
    bool fill();
    bool findLineStart();
    // From begin_ up to a line end, which begin_ then stands at, or to the end of the block.
    std::string_view takeUpToLineEnd();
    std::size_t find(char c) const;

    InputFile& file_;
    std::vector<std::byte> block_;
    std::uint64_t fileOffset_ = 0;
    std::uint64_t lineNumber_ = 0;
    std::size_t begin_ = 0;
    std::size_t end_ = 0;
    // The first CR and LF from begin_ on, or end_; out of date where they lie before begin_. Kept,
    // so that no byte is searched twice in a file that has only one of the two.
    std::size_t nextReturn_ = 0;
    std::size_t nextFeed_ = 0;
    bool afterCarriageReturn_ = false;
    std::string line_;
};

bool fileExists(const std::string& path);

// Of the process; empty when it is gone.
std::string currentDirectory();

// The path of the entry of `folder` that is called `name` in any letter case (the exact name
// first); folder/name itself when there is none.
std::string pathIgnoringCase(const std::string& folder, std::string_view name);

}  // namespace kestrel
