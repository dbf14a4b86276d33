#include "nuclide/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <ctime>
#include <vector>

#include "nuclide/queries.h"
#include "nuclide_fixture.h"
#include "ordinary_user.h"

namespace kestrel {
namespace {

using testing::HasSubstr;

TEST(QueryTexts, AreSentToTheCharacter) {
    struct Case {
        std::string text;
        const char* expected;
    };
    const std::vector<std::int32_t> two = {1234, 1240};
    const std::vector<std::int32_t> one = {17};
    const Case cases[] = {
        {std::string(energyWindowQuery),
         "select eng_eng, eng_rad, eng_br, eng_raddef, nc_a, nc_z, nc_dmode, elm_name, nc_i_num, "
         "nc_hl, nc_tsec, nc_1st_br_eng, nc_1st_br from q_eng_order_id where eng_eng > ? and "
         "eng_eng < ? and  eng_br > 0.1 ;"},
        {gammaLinesQuery(661.66),
         "select * from eng where (eng_eng > 659.66 and eng_eng < 663.66 ) and eng_br > 0.1 and "
         "eng_rad = 'G' order by eng_eng asc ;"},
        {gammaLinesQuery(1.0),
         "select * from eng where (eng_eng >-1 and eng_eng < 3 ) and eng_br > 0.1 and eng_rad = "
         "'G' order by eng_eng asc ;"},
        {nuclideQuery("Eu", "152m", true),
         "select * from q_nuc where elm_name ='Eu' and nc_a = 152 and nc_i_num > 0;"},
        {nuclideQuery("H ", "  3g", false),
         "select * from q_nuc where elm_name ='H' and nc_a = 3 and nc_i_num = 0;"},
        {nuclideQuery("A'", " 1", false),
         "select * from q_nuc where elm_name ='A''' and nc_a = 1 and nc_i_num = 0;"},
        {linesOfNuclidesQuery(two),
         "select * from q_eng_order_id2 where eng_nc = 1234 or eng_nc = 1240 "},
        {linesOfNuclidesQuery(one), "select * from q_eng_order_id2 where eng_nc = 17 "},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.text, c.expected);
}

// Every answer of the four queries, a row a line.
class ThreeKindsOfFile : public testing::Test {
  protected:
    static std::vector<std::string> rows(const Recordset& first,
                                         const std::vector<const char*>& columns) {
        std::vector<std::string> all;
        Recordset records = first;
        for (; !records.eof(); records.moveNext()) {
            std::string row;
            for (const char* column : columns)
                row += records.text(column) + "|";
            all.push_back(row);
        }
        return all;
    }
    static std::vector<std::string> answers(const std::string& folder) {
        NuclideDatabase database = test::nuclideDatabase();
        database.open(folder);
        database.prepareEnergyWindowQuery();
        std::vector<std::string> all;
        const auto add = [&](const Recordset& records, const std::vector<const char*>& columns) {
            for (std::string& row : rows(records, columns))
                all.push_back(std::move(row));
            all.emplace_back("end");
        };
        const std::vector<const char*> window = {"eng_eng",  "ENG_RAD",  "eng_br", "eng_raddef",
                                                 "nc_a",     "nc_z",     "nc_hl",  "elm_name",
                                                 "nc_i_num", "nc_dmode", "nc_tsec"};
        const std::vector<const char*> line = {"eng_eng", "eng_br",      "eng_rad",  "eng_raddef",
                                               "eng_nc",  "eng_gam_num", "eng_dmode"};
        const std::vector<std::pair<double, double>> bounds = {
            {0, 10000}, {661.66, 661.66}, {344, 345}, {700, 600}};
        for (const auto& [low, high] : bounds)
            add(database.queryEnergyWindow(low, high), window);
        for (const double centre : {121.78, 661.66, 1332.5})
            add(database.queryGammaLines(centre), line);
        for (const bool isomeric : {false, true})
            add(database.queryNuclide("eu", "152", isomeric),
                {"nc_id", "nc_a", "nc_dmode", "nc_hl", "nc_1st_br", "nc_eng_update"});
        const std::vector<std::int32_t> ids = {1235, 1233, 1234};
        add(database.queryLinesOfNuclides(ids), line);
        return all;
    }
    // The same rows as an SQLite file, by the program that converts.
    static void convert(const std::string& from, const std::string& to) {
        const std::string command = std::string(KESTREL_JET_READER " ") + from + " | cat > " + to;
        ASSERT_EQ(std::system(command.c_str()), 0);
    }
    test::TempFolder folder;
};

TEST_F(ThreeKindsOfFile, GiveTheSameRowsForTheSameQuestion) {
    convert(test::smallJetFile(), folder.file("NUC2K.mdb"));
    const std::vector<std::string> jet = answers(KESTREL_TEST_DATA "/jet");
    EXPECT_EQ(jet, answers(folder.path()));
    // All 184 lines above 0.1 %, none of exactly that; two of 344.2785 keV in the view's order.
    EXPECT_EQ(std::ranges::find(jet, "end") - jet.begin(), 184);
    const auto twin = std::ranges::find_if(jet, [](const std::string& row) {
        return row.starts_with("344.2785|") && row.find("13.517 Y") != std::string::npos;
    });
    ASSERT_NE(twin, jet.end());
    EXPECT_THAT(*(twin + 1), HasSubstr("|152|63|9.3"));
    EXPECT_EQ(std::ranges::count(jet, "end"), 10);
    EXPECT_GT(answers(KESTREL_NUCLIDE_DATA).size(), 10000U);
}

TEST_F(ThreeKindsOfFile, HoldTheNumbersThatTheAccessFileWasMadeOf) {
    NuclideDatabase database = test::nuclideDatabase();
    database.open(KESTREL_TEST_DATA "/jet");
    Recordset tritium = database.queryNuclide("H", "3", false);
    ASSERT_FALSE(tritium.eof());
    EXPECT_TRUE(tritium.isNull("nc_1st_br"));
    EXPECT_EQ(tritium.text("nc_eng_update"), "2000-11-01");
    const Recordset cobalt = database.queryNuclide("CO", "60", false);
    EXPECT_EQ(cobalt.text("nc_hl"), "5.2711 Y");
    tritium.moveNext();
    EXPECT_TRUE(tritium.eof());
    EXPECT_FALSE(tritium.bof());
}

TEST(BundledDatabase, FindsPureBetaEmittersAndTheLongLivedIsomers) {
    NuclideDatabase database = test::nuclideDatabase();
    database.open(KESTREL_NUCLIDE_DATA);
    for (const auto& [element, mass] : {std::pair{"Sr", "90"}, {"H", "3"}, {"Cs", "137"}}) {
        const Recordset state = database.queryNuclide(element, mass, false);
        ASSERT_FALSE(state.eof()) << element;
        EXPECT_FALSE(state.isNull("nc_1st_br")) << element;
    }
    EXPECT_FALSE(database.queryNuclide("Eu", "152", true).eof());
    EXPECT_TRUE(database.queryNuclide("Xx", "1", false).eof());
}

TEST(NuclideDatabaseFlags, FollowTheUsersOfTheConnection) {
    NuclideDatabase database = test::nuclideDatabase();
    database.open(KESTREL_TEST_DATA "/jet");
    EXPECT_TRUE(database.isOpen());
    database.open("/nowhere");  // the open connection is kept
    EXPECT_FALSE(database.queryNuclide("Co", "60", false).eof());
    database.prepareEnergyWindowQuery();
    EXPECT_FALSE(database.energyRecordsetOpen());
    const Recordset& all = database.queryEnergyWindow(661, 662);
    EXPECT_FALSE(all.eof());
    EXPECT_TRUE(database.energyRecordsetOpen());
    EXPECT_TRUE(database.queryEnergyWindow(662, 661).eof());
    EXPECT_TRUE(database.queryEnergyWindow(662, 661).bof());
    database.close();
    EXPECT_FALSE(database.isOpen() || database.energyQueryPrepared() ||
                 database.energyRecordsetOpen());
    EXPECT_THROW(database.open("/nowhere"), DatabaseError);
    database.open(KESTREL_NUCLIDE_DATA);
    EXPECT_FALSE(database.queryNuclide("Cs", "137", false).eof());
}

class MadeDatabase : public testing::Test {
  protected:
    std::string refusal() const { return test::refusalOf(folder.path()); }
    void execute(const char* sql) {
        sqlite3* handle = nullptr;
        sqlite3_open(folder.file("nuc2k.mdb").c_str(), &handle);
        EXPECT_EQ(sqlite3_exec(handle, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(handle);
    }
    test::TempFolder folder;
};

TEST_F(MadeDatabase, IsRefusedWithTheNamesOfWhatItLacks) {
    struct Case {
        const char* change;
        std::vector<const char*> named;
    };
    const Case cases[] = {
        {"", {}},
        {"drop view q_nuc", {"there is no table or query q_nuc"}},
        {"drop view q_nuc; drop view q_eng_order_id2", {"query q_nuc", "query q_eng_order_id2"}},
        {"drop view q_nuc; create view q_nuc as select nc_id, nc_a, nc_i_num, nc_dmode, nc_tsec, "
         "nc_1st_br, nc_eng_update, 'x' as elm_name from nc",
         {"q_nuc has no column nc_hl"}},
        {"drop view q_nuc; create view q_nuc as select * from gone", {"q_nuc", "gone"}},
        {"drop table eng", {"there is no table or query eng", "q_eng_order_id cannot be used"}},
    };
    for (const Case& c : cases) {
        test::writeDatabase(folder, test::oneLine());
        execute(c.change);
        const std::string why = refusal();
        EXPECT_EQ(why.empty(), c.named.empty()) << why;
        for (const char* name : c.named)
            EXPECT_THAT(why, HasSubstr(name)) << c.change;
    }
}

TEST_F(MadeDatabase, TellsWhenAnotherProgramHoldsIt) {
    test::writeDatabase(folder, test::oneLine());
    sqlite3* other = nullptr;
    sqlite3_open(folder.file("nuc2k.mdb").c_str(), &other);
    ASSERT_EQ(sqlite3_exec(other, "begin exclusive", nullptr, nullptr, nullptr), SQLITE_OK);
    EXPECT_THAT(refusal(), HasSubstr("database is locked"));
    sqlite3_close(other);
    EXPECT_EQ(refusal(), "");
}

// Views that a small file can hold, each of which held the window for up to a minute.
TEST_F(MadeDatabase, GivesUpAQueryThatWouldNotEnd) {
    const std::string view = "drop view q_eng_order_id2; create view q_eng_order_id2 as ";
    const std::string many =
        "with recursive n(i) as (select 1 union all select i + 1 from n limit 3000000) ";
    std::string chain = "drop view q_eng_order_id2; create view v0 as select * from eng; ";
    for (int i = 1; i < 30; ++i) {
        const std::string below = "v" + std::to_string(i - 1);
        chain += "create view v" + std::to_string(i) + " as select * from " + below +
                 " where eng_eng in (select eng_eng from " + below + "); ";
    }
    const std::string text(30000, 'a');
    std::string pattern;
    for (int i = 0; i < 100; ++i)
        pattern += "%a";
    const std::string cases[] = {
        view +
            "with recursive n(i) as (select 1 union all select i + 1 from n) "
            "select eng.* from eng, n where i < 0",
        view + many + "select eng.* from eng, n",
        view + many + "select eng.* from eng, n where '" + text + "' || i like '" + pattern +
            "b' or i < 0",
        view + "select eng.*, randomblob(1000000000) from eng",
        chain + "create view q_eng_order_id2 as select * from v29",
    };
    for (const std::string& sql : cases) {
        test::writeDatabase(folder, test::oneLine());
        execute(sql.c_str());
        const std::clock_t begin = std::clock();
        NuclideDatabase database = test::nuclideDatabase();
        const auto readAll = [&] {
            database.open(folder.path());
            const std::vector<std::int32_t> ids = {1};
            for (Recordset rows = database.queryLinesOfNuclides(ids); !rows.eof(); rows.moveNext())
                rows.text("eng_rad");
        };
        EXPECT_THROW(readAll(), DatabaseError) << sql.substr(0, 200);
        EXPECT_LT(std::clock() - begin, 20 * CLOCKS_PER_SEC) << sql.substr(0, 200);
    }
}

TEST(NuclideDatabase, TellsTheSourceOfAStateWhereItHasOne) {
    NuclideDatabase built = test::nuclideDatabase();
    built.open(KESTREL_NUCLIDE_DATA);
    const auto sourceOf = [&](const char* element, const char* mass, bool isomeric) {
        return built.sourceOfState(built.queryNuclide(element, mass, isomeric).whole("nc_id"));
    };
    EXPECT_EQ(sourceOf("Co", " 60", false), "ENSDF of 2023-09-01");
    EXPECT_EQ(sourceOf("Ba", "137", true), "ENDF/B-VIII.1 of 2024-08-30");
    EXPECT_EQ(built.sourceOfState(-1), "");
    NuclideDatabase own = test::nuclideDatabase();
    own.open(KESTREL_TEST_DATA "/jet");
    EXPECT_EQ(own.sourceOfState(1), "");
}

// To read a file in this mode the library would make two more beside it.
TEST_F(MadeDatabase, IsReadWithoutATraceWhateverItsJournal) {
    test::writeDatabase(folder, test::oneLine());
    execute("pragma journal_mode = wal");
    const std::size_t before = folder.entries();
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0555));
    {
        const test::OrdinaryUser user;
        EXPECT_EQ(refusal(), "");
    }
    std::filesystem::permissions(folder.path(), std::filesystem::perms(0755));
    EXPECT_EQ(folder.entries(), before);
    folder.write("nuc2k.mdb-wal", "unfinished");
    EXPECT_THAT(refusal(), HasSubstr("nuc2k.mdb-wal"));
}

}  // namespace
}  // namespace kestrel
