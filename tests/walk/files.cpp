#include "walk/files.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

namespace kestrel::walk {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

constexpr std::array folders = {"sqlite", "sqlite",  "sqlite",    "jet", "broken",
                                "list",   "results", "not there", "in"};

}  // namespace

Files::Files(Random& random) : random_(random) {
    for (const char* name :
         {"sqlite", "jet", "broken", "list/eng_list", "results", "settings", "in"})
        fs::create_directories(folder_.file(name));
    fs::copy_file(KESTREL_NUCLIDE_DATA "/nuc2k.mdb", folder_.file("sqlite/nuc2k.mdb"));
    const std::string jet = contentsOf(KESTREL_TEST_DATA "/jet/nuc2k.mdb");
    folder_.write("jet/NUC2K.MDB", jet);
    folder_.write("broken/nuc2k.mdb", jet.substr(0, jet.size() / 2));
    std::string list(44 * 200, ' ');
    for (std::size_t i = 0; i < list.size(); i += 44)
        list[i + 1] = static_cast<char>(i / 44);
    folder_.write("list/eng_list/all_nucl.elf", list);
    mkfifo(folder_.file("in/pipe.chn").c_str(), 0600);
    fs::permissions(folder_.write("results/protected.csv", "old"), fs::perms::owner_read);
    for (const auto& entry : fs::directory_iterator(KESTREL_SAMPLES)) {
        if (entry.path().extension() != ".md")
            samples_.push_back({entry.path().filename().string(), contentsOf(entry.path())});
    }
    // The order of a folder's entries is chance of another kind.
    std::ranges::sort(samples_, {}, &Sample::name);
    samples_.push_back({"labo.dat", "Laboratory Equipment" + std::string(9000, '\3')});
    fs::current_path(folder_.file("in"));
}

std::string Files::damaged(std::string bytes) {
    switch (random_.below(8)) {
        case 0:
            return bytes.substr(0, static_cast<std::size_t>(random_.below(200)));
        case 1:
            return bytes.substr(0, bytes.size() - static_cast<std::size_t>(random_.below(1500)));
        case 2:
            return bytes.insert(static_cast<std::size_t>(random_.below(600)), text());
        case 3:
        case 4:
            for (int flips = random_.between(1, 8); flips > 0; --flips)
                bytes[static_cast<std::size_t>(random_.below(flips % 2 == 0 ? 64 : 4000))] =
                    static_cast<char>(random_.below(256));
            return bytes;
        default:
            return bytes;
    }
}

FileChoice Files::spectrum() {
    struct Entry {
        std::string_view ending;
        int filter;
    };
    static constexpr std::array entries = {
        Entry{".chn", 1}, Entry{"windows.asc", 2},  Entry{"dos.asc", 3}, Entry{".dat", 4},
        Entry{".dat", 5}, Entry{"series35.txt", 6}, Entry{"e560.txt", 7}};
    fs::current_path(folder_.file("in"));
    FileChoice choice{.path = {}, .filterIndex = random_.between(1, 8)};
    if (random_.oneIn(10)) {
        constexpr std::array special = {"", "not there.chn", "not there.txt", "pipe.chn", "../in"};
        const std::string name = random_.pick(special);
        choice.path = name.empty() ? name : folder_.file("in/" + name);
        return choice;
    }
    const Sample& sample = random_.pick(samples_);
    for (const Entry& entry : entries) {
        if (sample.name.ends_with(entry.ending) && !random_.oneIn(5))
            choice.filterIndex = entry.filter;
    }
    constexpr std::array extensions = {"", "", "", "", ".chn", ".ASC", ".dat", ".Txt"};
    const std::string name = "in/" + sample.name + random_.pick(extensions);
    choice.path = folder_.write(name, damaged(sample.bytes));
    return choice;
}

FileChoice Files::database() {
    const std::string folder = random_.pick(folders);
    return {.path = random_.oneIn(3) ? std::string() : folder_.file(folder + "/nuc2k.mdb")};
}

FileChoice Files::output() {
    constexpr std::array names = {
        "results/a.csv", "results/b.csv", "results/protected.csv", "results",
        "not there/a",   "results/a.csv", "results/c.chn",         ""};
    const std::string name = random_.pick(names);
    fs::current_path(folder_.file("results"));
    return {.path = name.empty() ? name : folder_.file(name)};
}

std::string Files::text() {
    constexpr std::array texts = {"",      "0",      "1",           "100",  "661.66", "1332.5",
                                  "4095",  "16384",  "32767",       "-1",   "1e400",  "1e-400",
                                  "70000", "-32769", "Cs137",       "Co60", "Eu152",  "Ba137m",
                                  "TOT",   "' or 1", "\xe5\xbc\xa7"};
    if (random_.oneIn(20))
        return std::string(300, '9');
    return random_.oneIn(4) ? std::to_string(random_.below(20000)) : random_.pick(texts);
}

std::string Files::folder() {
    return folder_.file(random_.pick(folders));
}

void Files::damageSettings() {
    const std::string bytes = contentsOf(settingsFolder() + "/kestrel.inf");
    if (!bytes.empty())
        folder_.write("settings/kestrel.inf", damaged(bytes + std::string(4000, '\n')));
}

bool Files::holds(const std::string& path) const {
    std::error_code error;
    const std::string real = fs::weakly_canonical(path, error).string();
    return !error && real.starts_with(folder_.path() + "/");
}

}  // namespace kestrel::walk
