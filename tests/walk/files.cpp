#include "walk/files.h"

#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <set>

#include "spectrum/formats.h"

namespace kestrel::walk {
namespace {

namespace fs = std::filesystem;

constexpr const char* folders[] = {"sqlite", "sqlite",  "sqlite",    "jet", "broken",
                                   "list",   "results", "not there", "in"};
constexpr const char* outputs[] = {"results/a.csv", "results/b.csv", "results/protected.csv",
                                   "results",       "not there/a",   "results/c.chn"};
constexpr const char* oddSpectra[] = {"in/not there.chn", "in/not there.txt", "in/pipe.chn", "in"};
constexpr const char* extensions[] = {"", "", "", "", ".chn", ".ASC", ".dat", ".Txt"};
constexpr const char* texts[] = {"",       "0",      "1",           "100",  "661.66", "1332.5",
                                 "4095",   "16384",  "32767",       "-1",   "1e400",  "1e-400",
                                 "70000",  "-32769", "Cs137",       "Co60", "Eu152",  "TOT",
                                 "' or 1", "Ba137m", "\xe5\xbc\xa7"};

}  // namespace

Files::Files(Random& random) : random_(random) {
    for (const char* name :
         {"sqlite", "jet", "broken", "list/eng_list", "results", "settings", "in"})
        fs::create_directories(folder_.file(name));
    fs::copy_file(KESTREL_NUCLIDE_DATA "/nuc2k.mdb", folder_.file("sqlite/nuc2k.mdb"));
    const std::string jet = test::contentsOf(KESTREL_TEST_DATA "/jet/nuc2k.mdb");
    folder_.write("jet/NUC2K.MDB", jet);
    folder_.write("broken/nuc2k.mdb", jet.substr(0, jet.size() / 2));
    std::string list(44 * 200, ' ');
    for (std::size_t i = 0; i < list.size(); i += 44)
        list[i + 1] = static_cast<char>(i / 44);
    folder_.write("list/eng_list/all_nucl.elf", list);
    mkfifo(folder_.file("in/pipe.chn").c_str(), 0600);
    fs::permissions(folder_.write("results/protected.csv", "old"), fs::perms::owner_read);
    // Sorted, so that a seed gives the same walk everywhere.
    const std::set<fs::path> paths(fs::directory_iterator{KESTREL_SAMPLES},
                                   fs::directory_iterator{});
    for (const fs::path& path : paths) {
        if (const SpectrumFormat* format = formatForName(path.string()))
            samples_.push_back({path.filename().string(), static_cast<int>(format->id),
                                test::contentsOf(path.string())});
    }
    samples_.push_back({"labo.dat", 4, "Laboratory Equipment" + std::string(9000, '\3')});
    fs::current_path(folder_.file("in"));
}

std::string Files::damaged(std::string bytes) {
    const auto upTo = [this](int n) { return static_cast<std::size_t>(random_.below(n)); };
    switch (random_.below(8)) {
        case 0:
            return bytes.substr(0, upTo(200));
        case 1:
            return bytes.substr(0, bytes.size() - upTo(1500));
        case 2:
            return bytes.insert(upTo(600), text());
        case 3:
        case 4:
            for (int flips = random_.between(1, 8); flips > 0; --flips)
                bytes[upTo(flips % 2 == 0 ? 64 : 4000)] = static_cast<char>(random_.below(256));
            return bytes;
        default:
            return bytes;
    }
}

FileChoice Files::spectrum() {
    fs::current_path(folder_.file("in"));
    const Sample& sample = random_.pick(samples_);
    const int filter = random_.oneIn(4) ? random_.between(1, 8) : sample.filter;
    if (random_.oneIn(20))
        return {.path = {}, .filterIndex = filter};
    if (random_.oneIn(15))
        return {.path = folder_.file(random_.pick(oddSpectra)), .filterIndex = filter};
    const std::string name = "in/" + sample.name + random_.pick(extensions);
    return {.path = folder_.write(name, damaged(sample.bytes)), .filterIndex = filter};
}

FileChoice Files::database() {
    return {.path = random_.oneIn(3) ? std::string() : folder() + "/nuc2k.mdb"};
}

FileChoice Files::output() {
    fs::current_path(folder_.file("results"));
    return {.path = random_.oneIn(8) ? std::string() : folder_.file(random_.pick(outputs))};
}

std::string Files::text() {
    if (random_.oneIn(20))
        return std::string(300, '9');
    return random_.oneIn(4) ? std::to_string(random_.below(20000)) : random_.pick(texts);
}

std::string Files::folder() {
    return folder_.file(random_.pick(folders));
}

void Files::damageSettings() {
    const std::string bytes = test::contentsOf(settingsFolder() + "/kestrel.inf");
    if (!bytes.empty())
        folder_.write("settings/kestrel.inf", damaged(bytes + std::string(4000, '\n')));
}

bool Files::holds(const std::string& path) const {
    std::error_code error;
    const std::string real = fs::weakly_canonical(path, error).string();
    return !error && real.starts_with(folder_.path() + "/");
}

}  // namespace kestrel::walk
