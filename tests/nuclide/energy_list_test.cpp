#include "nuclide/energy_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "fault_matcher.h"
#include "nuclide/energy_filter.h"
#include "nuclide_fixture.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Lines around 661.5 keV, channel 1323 of this calibration.
class EnergyListTest : public testing::Test {
  protected:
    void add(double energy, double intensity, const char* definition = "",
             const char* radiation = "G") {
        const auto number = static_cast<std::int32_t>(tables.lines.size()) + 1;
        tables.lines.push_back({1, number, energy, intensity, radiation, "B-", definition});
    }
    void addLineOf(const NuclideEntry& nuclide, double energy) {
        tables.nuclides.push_back(nuclide);
        tables.lines.push_back({nuclide.id, 1, energy, 50, "G", "B-", ""});
    }
    const EnergyList& refresh(std::int16_t cursor = 1323) {
        test::writeDatabase(folder, tables);
        database = test::nuclideDatabase();
        state.forceRefresh = true;
        refreshEnergyList(state, {cursor, calibration, entries, marigoldDir}, database, dialogs);
        return state.list;
    }
    std::vector<std::string> column(std::size_t number) {
        std::vector<std::string> texts;
        for (const EnergyRow& row : refresh().rows)
            texts.push_back(row.text.at(number));
        return texts;
    }

    test::TempFolder folder;
    std::string marigoldDir = folder.path();
    test::ScriptedDialogs dialogs;
    NuclideTables tables{{{1, "Cs", 55, 137, 0, "30.07 Y", 9.5e8, "B-", 0, 0, "2023-09-01"}}, {}};
    NuclideDatabase database;
    EnergyEntries entries;
    EnergyListState state;
    Calibration calibration{0, 0.5, 0};
};

TEST_F(EnergyListTest, LeavesOutTheBoundsOfTheWindowAndKeepsThoseOfTheFilters) {
    add(658.5, 50);
    add(658.51, 0.1);
    add(658.8, 100);
    add(661.66, 100.1);
    add(664.4, 0.11);
    add(664.5, 50);
    EXPECT_THAT(column(1), ElementsAre("658.80", "664.40"));
    entries.text[9] = "-1";
    EXPECT_THAT(column(1), ElementsAre("No Data"));
    entries.text[9] = "3.0001 keV";
    EXPECT_EQ(column(1).size(), 4U);
    EXPECT_EQ(hiddenLinesText(state.list), "4 of 5 lines shown; the Gate hides the others");
    EXPECT_EQ(cursorText(state.list), "Cursor: 661.5 keV");
    EXPECT_EQ(state.list.nearest, 2) << "658.80, 2.7 keV away";
    entries.text[1] = "";
    EXPECT_THAT(column(1), ElementsAre("No Data"));
    EXPECT_EQ(hiddenLinesText(state.list), "0 of 5 lines shown; the Gate hides the others");
}

TEST_F(EnergyListTest, FillsTheColumnsAndColoursTheirCells) {
    tables.nuclides[0].strongestEnergy = 661.66;
    tables.nuclides[0].strongestIntensity = 85.1;
    add(661, 100);
    add(661.01, 80, " X ");
    const EnergyList& list = refresh();
    ASSERT_EQ(list.rows.size(), 2U);
    EXPECT_THAT(list.rows[1].text,
                ElementsAre("", "661.01", "80.00", "Cs-137g", "30.07 Y", "661.66", "85.10", "X"));
    EXPECT_THAT(list.rows[0].colour, ElementsAre(15, 15, 12, 15, 10, 15, 15, 15));
    EXPECT_THAT(list.rows[1].colour, ElementsAre(15, 10, 13, 15, 10, 15, 15, 15));
    EXPECT_EQ(list.rows[0].text[7], "G");
    EXPECT_EQ(state.updateText, "DB Update : " + fileDate(folder.file("nuc2k.mdb")));
    EXPECT_EQ(state.updateText.size(), 22U);
}

TEST_F(EnergyListTest, NamesNuclidesByTheirKeys) {
    addLineOf({2, "H", 1, 3, 0, "12.3 Y", 3.9e8, "B-", 0, 0, ""}, 661.1);
    addLineOf({3, "Co", 27, 60, 0, "5.3 Y", 1.7e8, "B-", 0, 0, ""}, 661.2);
    addLineOf({4, "Eu", 63, 152, 2, "96 M", 5760, "IT", 0, 0, ""}, 661.3);
    std::vector<std::string> picked;
    EXPECT_THAT(column(3), ElementsAre("H -  3g", "Co- 60g", "Eu-152m2"));
    for (const EnergyRow& row : state.list.rows)
        picked.push_back(nuclideOfRow(row));
    EXPECT_THAT(picked, ElementsAre("H -  3g", "Co- 60g", "Eu-152m2"));
    EnergyRow odd;
    for (const char* label : {"", "-1", "H-3"}) {
        odd.text[nuclideColumn] = label;
        EXPECT_EQ(nuclideOfRow(odd), "") << label;
    }
}

TEST_F(EnergyListTest, NeverShowsSums) {
    add(661.1, 50, "XTOT");
    add(661.2, 50);
    add(661.3, 50, "tot");
    add(661.4, 50, "B-TOT");
    EXPECT_THAT(column(1), ElementsAre("661.20", "661.30"));
    tables.lines.clear();
    add(661.1, 50, "XTOT");
    EXPECT_THAT(column(1), ElementsAre("No Data"));
}

TEST_F(EnergyListTest, PassesTheClassesThatAreWanted) {
    const char* modes[] = {"B-", "B-,EC", "EC,B+", "IT", "A,EC", "SF"};
    std::int32_t id = 2;
    for (const char* mode : modes)
        addLineOf({id++, "Eu", 63, 152, 0, mode, 5760, mode, 0, 0, ""}, 661);
    const std::vector<std::vector<std::string>> expected = {
        {"B-", "B-,EC", "EC,B+", "IT", "A,EC", "SF"}, {"B-"}, {"B-,EC", "EC,B+"}, {"IT"}, {"A,EC"}};
    for (int wanted = 0; wanted < 5; ++wanted) {
        entries.decayClass = wanted;
        EXPECT_EQ(column(4), expected[static_cast<std::size_t>(wanted)]) << wanted;
    }
    struct Case {
        const char* code;
        int number;
    };
    for (const Case& c : {Case{"G", 0},
                          {"X", 0},
                          {"", 0},
                          {"b-", 1},
                          {"B+", 2},
                          {"A", 3},
                          {"CE", 4},
                          {"AE", 4},
                          {"B-,B+", 2}})
        EXPECT_EQ(radiationClass(c.code), c.number) << c.code;
    entries.text[3] = "1e999";
    EXPECT_FAULT(EnergyFilter{entries}, Fault::Overflow);
}

TEST_F(EnergyListTest, GoesToTheMiddleRow) {
    struct Case {
        int lines;
        int firstVisible;
        int current;
    };
    // Half the row count, heading included, with halves to even.
    for (const Case& c : {Case{1, 1, 1}, {2, 1, 2}, {3, 1, 2}, {4, 1, 2}, {6, 2, 4}, {9, 3, 5}}) {
        tables.lines.clear();
        for (int i = 0; i < c.lines; ++i)
            add(661 + i / 10.0, 50);
        EXPECT_EQ(refresh().firstVisible, c.firstVisible) << c.lines;
        EXPECT_EQ(state.list.current, c.current) << c.lines;
    }
}

TEST_F(EnergyListTest, IsRebuiltOnlyWhenTheCursorHasMovedOrByForce) {
    add(661.66, 50);
    ASSERT_EQ(refresh().rows.size(), 1U);
    const auto again = [this](std::int16_t cursor, const char* width) {
        entries.text[9] = width;
        return refreshEnergyList(state, {cursor, calibration, entries, marigoldDir}, database,
                                 dialogs);
    };
    EXPECT_FALSE(again(1323, "0"));
    EXPECT_TRUE(again(1324, "0"));
    EXPECT_EQ(state.list.rows[0].text[1], "No Data");
    EXPECT_FALSE(again(0, "3"));
    EXPECT_EQ(state.list.rows[0].text[1], "No Data");
    state.forceRefresh = true;
    EXPECT_FALSE(again(-1, "3"));
    EXPECT_TRUE(again(1323, "3"));
    EXPECT_EQ(state.list.rows[0].text[1], "661.66");
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
}

TEST_F(EnergyListTest, TellsOfADatabaseThatCannotBeUsedAndWorksOnceItsFolderIsCorrected) {
    add(661.66, 50);
    marigoldDir = "/nowhere";
    EXPECT_TRUE(refresh().rows.empty());
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].title, "ERROR: NuclDB");
    EXPECT_THAT(dialogs.messages[0].text, HasSubstr("/nowhere/nuc2k.mdb"));
    EXPECT_EQ(dialogs.pointer, Pointer::Default);
    const auto activate = [this] {
        return refreshEnergyList(state, {1323, calibration, entries, marigoldDir}, database,
                                 dialogs);
    };
    EXPECT_FALSE(activate());
    EXPECT_EQ(dialogs.messages.size(), 1U);
    marigoldDir = folder.path();
    EXPECT_TRUE(activate());
    EXPECT_EQ(state.list.rows[0].text[1], "661.66");
    EXPECT_FALSE(activate());
}

TEST_F(EnergyListTest, ComesFromTheEnergyListFileWhereTheDatabaseFails) {
    add(661.66, 50);
    std::filesystem::create_directory(folder.file("Eng_List"));
    writeEnergyListFile(tables, folder.file("Eng_List/ALL_NUCL.elf"));
    folder.write("nuc2k.mdb", "no database");
    const auto move = [this](std::int16_t cursor) {
        return refreshEnergyList(state, {cursor, calibration, entries, marigoldDir}, database,
                                 dialogs);
    };
    EXPECT_TRUE(move(1323));
    EXPECT_TRUE(move(1320));
    EXPECT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(state.list.format, fileListFormat);
    EXPECT_EQ(state.list.rows.at(0).text[1], "  661.66");
    EXPECT_EQ(state.updateText.substr(0, 19), "Update : " + fileDate(folder.file("nuc2k.mdb")));
    EXPECT_THAT(state.updateText, HasSubstr("no database"));
}

// The middle row after the filters are narrowed to intensities above 10 %.
TEST(BundledData, ShowsTheSourcesOfTheWellKnownLines) {
    NuclideDatabase database = test::nuclideDatabase();
    database.open(KESTREL_NUCLIDE_DATA);
    database.prepareEnergyWindowQuery();
    struct Case {
        double energy;
        const char* key;
        const char* shown;
    };
    for (const Case& c : {Case{661.7, "Cs-137g", "661.66"},
                          {1173.2, "Co- 60g", "1173.23"},
                          {1332.5, "Co- 60g", "1332.49"},
                          {1408.0, "Eu-152g", "1408.01"}}) {
        for (const char* least : {"0.1", "10"}) {
            EnergyEntries entries;
            entries.text[0] = least;
            const EnergyList list = listFromDatabase(database, entries, c.energy);
            const auto row = std::ranges::find_if(list.rows, [&](const EnergyRow& r) {
                return r.text[3] == c.key && r.text[1] == c.shown;
            });
            ASSERT_NE(row, list.rows.end()) << c.key << c.energy;
            EXPECT_EQ(row->colour[1], 10);
            const auto place = row - list.rows.begin() + 1;
            if (std::string(least) == "10") {
                EXPECT_NEAR(static_cast<double>(place), list.current, 3) << c.key << c.energy;
            }
        }
    }
}

}  // namespace
}  // namespace kestrel
