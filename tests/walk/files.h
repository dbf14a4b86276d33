// The files and folders of a walk, all of them in one temporary folder: samples and damaged copies
// of them to open, folders with and without a nuclide database, places to save in.
#pragma once

#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/dialogs.h"
#include "temp_folder.h"

namespace kestrel::walk {

// The same numbers for the same seed on every machine.
class Random {
  public:
    explicit Random(unsigned seed) : engine_(seed) {}

    // 0 to n - 1.
    int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
    bool oneIn(int n) { return below(n) == 0; }
    int between(int low, int high) { return low + below(high - low + 1); }
    template <typename Range>
    auto& pick(Range& range) {
        return *std::next(std::begin(range), below(static_cast<int>(std::size(range))));
    }

  private:
    std::mt19937 engine_;
};

class Files {
  public:
    explicit Files(Random& random);

    // The answers to the open and save dialogs; an empty path for Cancel.
    FileChoice spectrum();
    FileChoice database();
    FileChoice output();
    // What is typed into a field or an input box.
    std::string text();
    // For results or the nuclide database; some of them do not exist.
    std::string folder();

    std::string settingsFolder() const { return folder_.file("settings"); }
    void damageSettings();
    bool holds(const std::string& path) const;

  private:
    struct Sample {
        std::string name;
        int filter;
        std::string bytes;
    };
    std::string damaged(std::string bytes);

    Random& random_;
    test::TempFolder folder_;
    std::vector<Sample> samples_;
};

}  // namespace kestrel::walk
