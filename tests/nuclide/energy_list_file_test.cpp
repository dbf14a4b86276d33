#include "nuclide/energy_list_file.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "fault_matcher.h"
#include "nuclide_fixture.h"

namespace kestrel {
namespace {

class EnergyListFile : public testing::Test {
  protected:
    // Records of 10.00, 20.00 ... keV.
    std::string write(int count, std::size_t cutBytes = 0) const {
        std::string bytes;
        for (int i = 1; i <= count; ++i)
            bytes += record(static_cast<std::uint32_t>(i) * 1000);
        bytes.resize(bytes.size() - cutBytes);
        return folder.write("all_nucl.elf", bytes);
    }
    static std::string number(std::uint32_t value) {
        std::string bytes;
        for (unsigned shift = 0; shift < 32; shift += 8)
            bytes += static_cast<char>(value >> shift);
        return bytes;
    }
    static std::string record(std::uint32_t energy, const std::string& halfLife = "30.07    ",
                              const std::string& unit = " Y ", std::uint32_t intensity = 85100) {
        return number(energy) + number(intensity) + "Cs " + "137g     " + halfLife + unit +
               number(66166) + number(80001) + "G       ";
    }
    test::TempFolder folder;
};

TEST_F(EnergyListFile, ListsTheHundredRecordsAroundTheEnergy) {
    struct Case {
        int records;
        std::size_t cut;
        double energy;
        std::size_t rows;
        const char* first;
    };
    const Case cases[] = {
        {1000, 0, 5000, 100, " 4510.00"},  // the first above is number 501
        {1000, 0, 5005, 100, " 4510.00"}, {1000, 0, 4999.99, 100, " 4500.00"},
        {1000, 0, 9.99, 100, "   10.00"},  // below the first record
        {1000, 0, -100, 100, "   10.00"}, {1000, 0, 510, 100, "   20.00"},
        {1000, 0, 500, 100, "   10.00"},  {1000, 0, 99999, 50, " 9510.00"},  // above the last
        {1000, 1, 99999, 50, " 9500.00"},  // the part of a record at the end does not count
        {101, 0, 1010, 50, "  520.00"},   {1, 0, 5000, 1, "   10.00"},
        {1, 0, 1, 1, "   10.00"},         {0, 0, 100, 1, "No Data"},
    };
    for (const Case& c : cases) {
        const EnergyList list = listFromFile(write(c.records, c.cut), c.energy);
        EXPECT_EQ(list.rows.size(), c.rows) << c.records << " " << c.energy;
        EXPECT_EQ(list.rows.at(0).text[1], c.first) << c.records << " " << c.energy;
        EXPECT_LE(list.current, static_cast<int>(c.rows));
    }
    EXPECT_FAULT(listFromFile(folder.file("gone"), 100), Fault::FileNotFound);
}

TEST_F(EnergyListFile, RefusesAFileTooLongToSearch) {
    const std::string path = write(1);
    std::filesystem::resize_file(path, 480'000'047);  // sparse, and a part of a record
    EXPECT_EQ(listFromFile(path, 5).rows.size(), 100U);
    for (const std::uintmax_t size : {std::uintmax_t{480'000'048}, std::uintmax_t{1} << 40}) {
        std::filesystem::resize_file(path, size);
        EXPECT_FAULT(listFromFile(path, 50), Fault::PathAccess) << size;
    }
}

TEST_F(EnergyListFile, ShowsARecordInTheColumns) {
    folder.write("a", record(66166));
    const EnergyRow row = listFromFile(folder.file("a"), 661.7).rows.at(0);
    const std::array<std::string, 8> expected = {"",        "  661.66", "85.10", "Cs-137g",
                                                 "30.07 Y", "661.66",   "80.00", ""};
    EXPECT_EQ(row.text, expected);
    EXPECT_EQ(row.colour, (std::array<int, 8>{15, 10, 12, 15, 10, 15, 12, 15}));
}

TEST_F(EnergyListFile, TellsHalfLivesByTheirUnits) {
    struct Case {
        const char* value;
        const char* unit;
        int colour;
    };
    const Case cases[] = {
        {"1        ", " Y ", 11}, {"1.1      ", " Y ", 10}, {"25       ", " H ", 11},
        {"24       ", " H ", 14}, {"61       ", " M ", 14}, {"60       ", " M ", 15},
        {"3601     ", " S ", 14}, {"3599000  ", "MS ", 15}, {"3700000  ", "MS ", 14},
        {"4000     ", "QQ ", 14}, {"2        ", " D ", 11}, {"99999999x", "US ", 15},
        {"text     ", " Y ", 15},
    };
    for (const Case& c : cases) {
        folder.write("a", record(66166, c.value, c.unit));
        EXPECT_EQ(listFromFile(folder.file("a"), 600).rows.at(0).colour[4], c.colour)
            << c.value << c.unit;
    }
}

TEST_F(EnergyListFile, ReadsTheFileThatComesWithTheProgram) {
    const EnergyList list = listFromFile(energyListFilePath(KESTREL_NUCLIDE_DATA), 661.7);
    const auto row =
        std::ranges::find_if(list.rows, [](const EnergyRow& r) { return r.text[1] == "  661.66"; });
    ASSERT_NE(row, list.rows.end());
    EXPECT_EQ(row->text[3], "Cs-137g");
    EXPECT_EQ(row->colour[1], 10);
    EXPECT_EQ(row->colour[4], 10);
}

}  // namespace
}  // namespace kestrel
