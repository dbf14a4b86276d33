#include "nuclide/jet/stored_query.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/text.h"

namespace kestrel::jet {
namespace {

// Values of a row's attribute.
enum Attribute {
    kindRow = 1,
    parameterRow = 2,
    optionRow = 3,
    inputRow = 5,
    outputRow = 6,
    joinRow = 7,
    whereRow = 8,
    groupRow = 9,
    havingRow = 10,
    sortRow = 11,
};

constexpr int selectKind = 1;

// Bits of the options. DISTINCTROW drops doubled rows of the tables that the output comes from,
// which a join along a key never makes.
constexpr int allColumns = 1;
constexpr int distinct = 2;
constexpr int top = 16;
constexpr int percent = 32;

std::vector<QueryRow> rowsOf(const StoredQuery& query, int attribute) {
    std::vector<QueryRow> rows;
    std::ranges::copy_if(query.rows, std::back_inserter(rows),
                         [attribute](const QueryRow& row) { return row.attribute == attribute; });
    std::ranges::stable_sort(rows, {}, &QueryRow::order);
    return rows;
}

const std::string& required(const std::optional<std::string>& field, const char* what) {
    if (!field || field->empty())
        throw QueryError(std::string("it lacks ") + what);
    return *field;
}

const std::string& expressionOf(const QueryRow& row) {
    return required(row.expression, "an expression");
}

std::string valuesOf(const std::vector<QueryRow>& rows, const KindOf& kindOf) {
    std::string text;
    for (const QueryRow& row : rows)
        text += (text.empty() ? "" : ", ") + valueText(expressionOf(row), kindOf);
    return text;
}

// All conditions of the rows.
std::string conditionsOf(const std::vector<QueryRow>& rows, const KindOf& kindOf) {
    if (rows.size() == 1)
        return conditionText(expressionOf(rows.front()), kindOf);
    std::string text;
    for (const QueryRow& row : rows)
        text += (text.empty() ? "(" : " AND (") + conditionText(expressionOf(row), kindOf) + ")";
    return text;
}

std::string outputText(const StoredQuery& query, int options, const KindOf& kindOf) {
    std::string text;
    for (const QueryRow& row : rowsOf(query, outputRow)) {
        text += (text.empty() ? "" : ", ") + valueText(expressionOf(row), kindOf);
        if (row.name1 && !row.name1->empty())
            text += " AS " + quotedName(*row.name1);
    }
    if ((options & allColumns) != 0)
        text += text.empty() ? "*" : ", *";
    if (text.empty())
        throw QueryError("it has no columns");
    return text;
}

// Inputs that joins have put together, as one term of FROM.
struct Term {
    std::string text;
    std::vector<std::string> aliases;
};

std::size_t termWith(const std::vector<Term>& terms, const std::string& alias) {
    for (std::size_t i = 0; i < terms.size(); ++i) {
        if (std::ranges::any_of(terms[i].aliases,
                                [&](const std::string& a) { return equalIgnoringCase(a, alias); }))
            return i;
    }
    throw QueryError("it joins " + alias + ", which is none of its tables");
}

struct Join {
    std::string left;
    std::string right;
    std::vector<QueryRow> conditions;
    int kind;
};

bool sameTables(const Join& a, const Join& b) {
    return (equalIgnoringCase(a.left, b.left) && equalIgnoringCase(a.right, b.right)) ||
           (equalIgnoringCase(a.left, b.right) && equalIgnoringCase(a.right, b.left));
}

// Several joins between the same two tables are one, by all their conditions.
std::vector<Join> joinsOf(const StoredQuery& query) {
    std::vector<Join> joins;
    for (const QueryRow& row : rowsOf(query, joinRow)) {
        Join join{required(row.name1, "a table of a join"),
                  required(row.name2, "a table of a join"),
                  {row},
                  row.flag.value_or(1)};
        const auto same =
            std::ranges::find_if(joins, [&](const Join& other) { return sameTables(other, join); });
        if (same == joins.end())
            joins.push_back(std::move(join));
        else
            same->conditions.push_back(row);
    }
    return joins;
}

std::string inParentheses(const Term& term) {
    return term.aliases.size() > 1 ? "(" + term.text + ")" : term.text;
}

void applyJoin(std::vector<Term>& terms, const Join& join, const KindOf& kindOf) {
    static constexpr std::array words = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN "};
    if (join.kind < 1 || join.kind > static_cast<int>(words.size()))
        throw QueryError("it has a join of an unknown kind");
    const std::size_t left = termWith(terms, join.left);
    const std::size_t right = termWith(terms, join.right);
    if (left == right)
        throw QueryError("its joins form a ring");
    Term joined{inParentheses(terms[left]) + words[static_cast<std::size_t>(join.kind - 1)] +
                    inParentheses(terms[right]) + " ON " + conditionsOf(join.conditions, kindOf),
                terms[left].aliases};
    joined.aliases.insert(joined.aliases.end(), terms[right].aliases.begin(),
                          terms[right].aliases.end());
    if (joined.text.size() > longestText)
        throw QueryError("it is too long");
    terms[left] = std::move(joined);
    terms.erase(terms.begin() + static_cast<std::ptrdiff_t>(right));
}

std::string fromText(const StoredQuery& query, const KindOf& kindOf) {
    std::vector<Term> terms;
    for (const QueryInput& input : inputsOf(query)) {
        std::string text = quotedName(input.table);
        if (input.alias != input.table)
            text += " AS " + quotedName(input.alias);
        terms.push_back({text, {input.alias}});
    }
    for (const Join& join : joinsOf(query))
        applyJoin(terms, join, kindOf);
    std::string text;
    for (const Term& term : terms)
        text += (text.empty() ? "" : ", ") + term.text;
    if (text.empty())
        throw QueryError("it reads no table");
    return text;
}

std::string sortText(const StoredQuery& query, const KindOf& kindOf) {
    std::string text;
    for (const QueryRow& row : rowsOf(query, sortRow)) {
        text += (text.empty() ? " ORDER BY " : ", ") + valueText(expressionOf(row), kindOf);
        if (row.name1 && equalIgnoringCase(*row.name1, "D"))
            text += " DESC";
    }
    return text;
}

std::string conditionClause(const StoredQuery& query, int attribute, const char* word,
                            const KindOf& kindOf) {
    const std::vector<QueryRow> rows = rowsOf(query, attribute);
    return rows.empty() ? std::string() : word + conditionsOf(rows, kindOf);
}

std::string groupText(const StoredQuery& query, const KindOf& kindOf) {
    const std::vector<QueryRow> rows = rowsOf(query, groupRow);
    return rows.empty() ? std::string() : " GROUP BY " + valuesOf(rows, kindOf);
}

std::string limitText(const QueryRow& option) {
    const std::string& count = required(option.name1, "the count of TOP");
    if (positionOfOther(count, "0123456789") != 0)
        throw QueryError("its TOP count is no number");
    return " LIMIT " + count;
}

// The kinds of the columns by the names under which the query knows its inputs.
KindOf kindsIn(const StoredQuery& query, const KindOf& kindOfTable) {
    return
        [inputs = inputsOf(query), &kindOfTable](std::string_view input, std::string_view column) {
            ColumnKind found = ColumnKind::Other;
            for (const QueryInput& one : inputs) {
                if (kindOfTable && (input.empty() || equalIgnoringCase(one.alias, input)) &&
                    found == ColumnKind::Other)
                    found = kindOfTable(one.table, column);
            }
            return found;
        };
}

void checkKind(const StoredQuery& query) {
    for (const QueryRow& row : rowsOf(query, kindRow)) {
        if (row.flag.value_or(selectKind) != selectKind)
            throw QueryError("it is no SELECT query");
    }
    if (!rowsOf(query, parameterRow).empty())
        throw QueryError("it asks for parameters");
}

bool isNamePart(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || byte == '_' || (byte >= '0' && byte <= '9') ||
           (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

// Whether an expression names alias.column; brackets around either are passed over.
bool namesColumn(std::string_view expression, const std::string& wanted) {
    std::string plain;
    std::ranges::copy_if(expression, std::back_inserter(plain),
                         [](char c) { return c != '[' && c != ']'; });
    std::ranges::replace(plain, '!', '.');
    for (std::size_t at = findIgnoringCase(plain, wanted); at != std::string::npos;
         at = findIgnoringCase(plain, wanted, at + 1)) {
        const std::size_t end = at + wanted.size();
        if ((at == 0 || !isNamePart(plain[at - 1])) &&
            (end == plain.size() || !isNamePart(plain[end])))
            return true;
    }
    return false;
}

}  // namespace

std::string quotedName(const std::string& name) {
    std::string result = "\"";
    for (const char c : name)
        result.append(c == '"' ? 2 : 1, c);
    return result + '"';
}

std::vector<QueryInput> inputsOf(const StoredQuery& query) {
    std::vector<QueryInput> inputs;
    for (const QueryRow& row : rowsOf(query, inputRow)) {
        const std::string& table = required(row.name1, "the name of a table");
        inputs.push_back({table, row.name2 && !row.name2->empty() ? *row.name2 : table});
    }
    return inputs;
}

bool joinsOrSortsBy(const StoredQuery& query, const std::string& alias, const std::string& column) {
    std::vector<QueryRow> rows = rowsOf(query, joinRow);
    const std::vector<QueryRow> sortRows = rowsOf(query, sortRow);
    if (!sortRows.empty())
        rows.push_back(sortRows.front());
    return std::ranges::any_of(rows, [&](const QueryRow& row) {
        return row.expression && namesColumn(*row.expression, alias + "." + column);
    });
}

std::string selectText(const StoredQuery& query, const KindOf& kindOfTable) {
    checkKind(query);
    const std::vector<QueryRow> optionRows = rowsOf(query, optionRow);
    const QueryRow option = optionRows.empty() ? QueryRow{} : optionRows.front();
    const int options = option.flag.value_or(0);
    if ((options & percent) != 0)
        throw QueryError("it takes a percentage of its rows");
    const KindOf kindOf = kindsIn(query, kindOfTable);
    const std::string sorting = sortText(query, kindOf);
    // Access adds the rows that tie with the last.
    if ((options & top) != 0 && !sorting.empty())
        throw QueryError("it takes the first of its sorted rows");
    std::string text = (options & distinct) != 0 ? "SELECT DISTINCT " : "SELECT ";
    text += outputText(query, options, kindOf) + " FROM " + fromText(query, kindOf);
    text += conditionClause(query, whereRow, " WHERE ", kindOf);
    text += groupText(query, kindOf);
    text += conditionClause(query, havingRow, " HAVING ", kindOf);
    text += sorting;
    if ((options & top) != 0)
        text += limitText(option);
    if (text.size() > longestText)
        throw QueryError("it is too long");
    return text;
}

}  // namespace kestrel::jet
