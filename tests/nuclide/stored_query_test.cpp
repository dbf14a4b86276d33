#include "nuclide/jet/stored_query.h"

#include <gtest/gtest.h>

namespace kestrel::jet {
namespace {

QueryRow input(const char* order, const char* table, const char* alias = "") {
    return {.attribute = 5,
            .order = order,
            .name1 = table,
            .name2 = alias,
            .expression = {},
            .flag = {}};
}
QueryRow output(const char* order, const char* expression, const char* alias = "") {
    return {.attribute = 6,
            .order = order,
            .name1 = alias,
            .name2 = {},
            .expression = expression,
            .flag = 0};
}
QueryRow join(const char* order, const char* left, const char* right, const char* condition,
              int kind = 1) {
    return {7, order, left, right, condition, kind};
}
QueryRow part(int attribute, const char* order, const char* expression) {
    return {.attribute = attribute,
            .order = order,
            .name1 = {},
            .name2 = {},
            .expression = expression,
            .flag = {}};
}
QueryRow options(int flag, const char* count = "") {
    return {
        .attribute = 3, .order = "1", .name1 = count, .name2 = {}, .expression = {}, .flag = flag};
}

std::string text(std::vector<QueryRow> rows) {
    try {
        return selectText({"q", std::move(rows)});
    } catch (const QueryError& error) {
        return std::string("refused: ") + error.what();
    }
}

TEST(StoredQuery, BecomesAnSqliteSelect) {
    const QueryRow a = input("1", "a");
    const QueryRow b = input("2", "b");
    const QueryRow c = input("3", "c");
    const QueryRow descending = {11, "2", "D", {}, "a.y", {}};
    const std::pair<std::vector<QueryRow>, const char*> cases[] = {
        {{a, options(1)}, R"(SELECT * FROM "a")"},
        {{output("2", "a.y", "why so"), a, output("1", "a.x")},
         R"(SELECT [a].[x], [a].[y] AS "why so" FROM "a")"},
        {{output("1", "t.*"), input("1", "big table", "t")},
         R"(SELECT [t].* FROM "big table" AS "t")"},
        {{a, b, options(1)}, R"(SELECT * FROM "a", "b")"},
        // The innermost join first, its place in the outer one in parentheses.
        {{join("2", "a", "b", "a.x = b.x"), a, c, b, join("1", "b", "c", "b.y = c.y"), options(1)},
         R"(SELECT * FROM "a" INNER JOIN ("b" INNER JOIN "c" ON [b].[y] = [c].[y]) ON [a].[x] = [b].[x])"},
        {{a, b, join("1", "a", "b", "a.x = b.x"), join("2", "b", "a", "a.y = b.y"), options(1)},
         R"(SELECT * FROM "a" INNER JOIN "b" ON ([a].[x] = [b].[x]) AND ([a].[y] = [b].[y]))"},
        {{a, b, join("1", "A", "B", "a.x = b.x", 2), options(1)},
         R"(SELECT * FROM "a" LEFT JOIN "b" ON [a].[x] = [b].[x])"},
        {{a, part(8, "1", "[a]![x] = \"G & H\""), options(1)},
         R"(SELECT * FROM "a" WHERE [a].[x] = 'G & H')"},
        {{a, part(11, "1", "a.x"), descending, options(1)},
         R"(SELECT * FROM "a" ORDER BY [a].[x], [a].[y] DESC)"},
        {{a, options(1 + 2 + 8 + 16, "5")}, R"(SELECT DISTINCT * FROM "a" LIMIT 5)"},
        {{a, output("1", "a.x"), part(9, "1", "a.x"), part(10, "1", "a.x > 1")},
         R"(SELECT [a].[x] FROM "a" GROUP BY [a].[x] HAVING [a].[x] > 1)"},
    };
    for (const auto& [rows, expected] : cases)
        EXPECT_EQ(text(rows), expected);
}

TEST(StoredQuery, IsRefusedWhereSqliteWouldAnswerSomethingElse) {
    const QueryRow a = input("1", "a");
    const std::vector<QueryRow> cases[] = {
        {},
        {a},
        {options(1)},
        {a, options(1 + 16 + 32, "5")},
        {a, options(1 + 16, "5; drop")},
        {a, output("1", "")},
        {a, options(1 + 16, "5"), part(11, "1", "a.x")},
        {a,
         options(1),
         {.attribute = 1, .order = "1", .name1 = {}, .name2 = {}, .expression = {}, .flag = 9}},
        {a, options(1), {2, "1", "p", {}, {}, 4}},
        {a, options(1), join("1", "a", "gone", "a.x = gone.x")},
        {a, options(1), join("1", "a", "a", "a.x = a.x")},
        {a, input("2", "b"), options(1), join("1", "a", "b", "a.x = b.x", 7)},
    };
    int number = 0;
    for (const std::vector<QueryRow>& rows : cases)
        EXPECT_EQ(text(rows).substr(0, 8), "refused:") << number++;
}

TEST(StoredQuery, KnowsTheColumnsThatItJoinsAndSortsBy) {
    const StoredQuery query{"q",
                            {input("1", "a"), input("2", "b"), join("1", "a", "b", "[a].[x]=b.xx"),
                             part(11, "2", "a.second"), part(11, "1", "A.First")}};
    for (const char* column : {"x", "first"})
        EXPECT_TRUE(joinsOrSortsBy(query, "a", column)) << column;
    for (const char* column : {"xx", "second", "fir"})
        EXPECT_FALSE(joinsOrSortsBy(query, "a", column)) << column;
    EXPECT_FALSE(joinsOrSortsBy(query, "b", "x"));
}

}  // namespace
}  // namespace kestrel::jet
