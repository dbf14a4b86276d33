#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>

#include "base/text.h"
#include "nuclide/jet/expression.h"

namespace kestrel::jet {
namespace {

ColumnKind kindOf(std::string_view, std::string_view column) {
    return equalIgnoringCase(column, "name")   ? ColumnKind::Text
           : equalIgnoringCase(column, "mass") ? ColumnKind::Whole
           : equalIgnoringCase(column, "half") ? ColumnKind::Real
           : equalIgnoringCase(column, "iso")  ? ColumnKind::Logical
                                               : ColumnKind::Other;
}

// The expression's value for one row of a table; what refused it otherwise.
std::string answer(const std::string& expression) {
    std::string sql;
    try {
        sql = "SELECT " + valueText(expression, kindOf) + " FROM nc";
    } catch (const QueryError& error) {
        return std::string("refused: ") + error.what();
    }
    sqlite3* handle = nullptr;
    sqlite3_open(":memory:", &handle);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close_v2)> database(handle, &sqlite3_close_v2);
    sqlite3_exec(handle,
                 "CREATE TABLE nc (name TEXT COLLATE NOCASE, mass INTEGER, half REAL, iso INTEGER,"
                 " gone); INSERT INTO nc VALUES ('it''s Ba', 137, 2.5, -1, NULL)",
                 nullptr, nullptr, nullptr);
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(handle, sql.c_str(), -1, &statement, &tail) != SQLITE_OK)
        return std::string("error: ") + sqlite3_errmsg(handle);
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> owner(statement,
                                                                           &sqlite3_finalize);
    EXPECT_STREQ(tail, "") << sql;
    sqlite3_step(statement);
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    return text == nullptr ? "Null" : text;
}

// What Access answers.
TEST(JetExpression, AnswersTheSameInSqlite) {
    const std::pair<const char*, const char*> cases[] = {
        {R"(IIf(nc.name="it's Ba",1,2))", "1"},
        {R"("say ""so"", it's")", R"(say "so", it's)"},
        {R"('it''s' & " so")", "it's so"},
        {R"("';COMMIT;ATTACH 'x' AS p;SELECT '")", "';COMMIT;ATTACH 'x' AS p;SELECT '"},
        {"[nc]![mass]", "137"},
        {"mass / 2", "68.5"},
        {"mass * 2 / 4 / 2", "34.25"},
        {"1 / 3 * 3 > 0.9", "-1"},
        {"iso = True", "-1"},
        {"(iso = True) + 1", "0"},
        {"Not iso", "0"},
        {"iso And mass > 1", "-1"},
        {"-iso", "1"},
        {R"(name Like "*b[a-c]")", "-1"},
        {R"(name Like "IT'S ##")", "0"},
        {R"(name Not Like "i*[!b-z]")", "0"},
        {R"(mass Like "1#7")", "-1"},
        {R"(UCase("ba") = "BA")", "-1"},
        {R"(LCase(name) = "IT'S BA")", "-1"},
        {R"("a" In ("B", "A"))", "-1"},
        {R"(gone & "x")", "refused"},
        {R"(name & gone)", "refused"},
        {R"("Ba-" & mass)", "Ba-137"},
        {R"(name + "!")", "it's Ba!"},
        {"mass Between 100 And 200", "-1"},
        {"gone Is Null", "-1"},
        {"IsNull(gone)", "-1"},
        {R"(Nz(gone, "none"))", "none"},
        {"1 - -2", "3"},
        {"2 + 3 * 4", "14"},
        {"Abs(-half)", "2.5"},
        {R"(Len("abc"))", "3"},
    };
    for (const auto& [expression, expected] : cases)
        EXPECT_THAT(answer(expression), testing::StartsWith(expected)) << expression;
}

TEST(JetExpression, IsRefusedByNameWhereItHasNoCounterpart) {
    const std::pair<std::string, const char*> cases[] = {
        {"`x'; DROP TABLE nc; --`", "the sign `"},
        {"mass -- it's", "a comment"},
        {"mass /* ' */", "a comment"},
        {"mass; DROP TABLE nc", "the sign ;"},
        {"mass > #1/1/2000#", "a date"},
        {"\"no end", "no end"},
        {"[no end", "no end"},
        {"2 ^ 3", "has ^"},
        {"7 \\ 2", "has \\"},
        {"7 Mod 2", "has Mod"},
        {"iso Xor iso", "has Xor"},
        {"mass And 2", "And of what is no condition"},
        {"half & \"\"", "has &"},
        {"name + 1", "has +"},
        {"gone + gone", "has +"},
        {"name = 1", "a text with a number"},
        {"mass Between 5 And 1", "Between"},
        {"name Like [x]", "Like"},
        {"half Like \"2*\"", "Like"},
        {"load_extension(\"x\")", "the function load_extension"},
        {"Round(half)", "the function Round"},
        {"nc.rowid", "has rowid"},
        {"(SELECT 1)", "lacks a )"},
        {"1)", "not understood"},
        {"mass SELECT", "not understood"},
        {"9E308 * 1", "too large"},
        {std::string("a\0b", 3), ""},
        {std::string(100000, '('), "too deeply"},
        {std::string(100000, '-'), "comment"},
    };
    for (const auto& [expression, why] : cases) {
        const std::string text = answer(expression);
        EXPECT_THAT(text, testing::StartsWith("refused: ")) << expression.substr(0, 40);
        EXPECT_THAT(text, testing::HasSubstr(why)) << expression.substr(0, 40);
    }
}

}  // namespace
}  // namespace kestrel::jet
