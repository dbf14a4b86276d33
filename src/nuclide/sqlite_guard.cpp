#include "nuclide/sqlite_guard.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "base/text.h"

namespace kestrel {
namespace {

struct Limit {
    int category;
    int most;
};

constexpr std::array<Limit, 7> limits = {{
    {SQLITE_LIMIT_LIKE_PATTERN_LENGTH, 256},
    {SQLITE_LIMIT_EXPR_DEPTH, 200},
    {SQLITE_LIMIT_COMPOUND_SELECT, 10},
    {SQLITE_LIMIT_VDBE_OP, 50000},
    {SQLITE_LIMIT_FUNCTION_ARG, 16},
    {SQLITE_LIMIT_COLUMN, 256},
    {SQLITE_LIMIT_ATTACHED, 0},
}};

// With effects, or with an answer of a size that the caller chooses.
constexpr std::array<std::string_view, 6> forbiddenFunctions = {
    "load_extension", "fts3_tokenizer", "randomblob", "zeroblob", "printf", "format"};

bool isForbidden(std::string_view function) {
    return std::ranges::any_of(forbiddenFunctions, [&](std::string_view forbidden) {
        return equalIgnoringCase(function, forbidden);
    });
}

}  // namespace

void limitWork(sqlite3* handle) {
    for (const Limit& limit : limits)
        sqlite3_limit(handle, limit.category, limit.most);
}

bool isReading(int action, const char* first, const char* second) {
    switch (action) {
        case SQLITE_SELECT:
        case SQLITE_RECURSIVE:
            return true;
        case SQLITE_READ:
            return first != nullptr && !std::string_view(first).starts_with("pragma_");
        case SQLITE_FUNCTION:
            return second != nullptr && !isForbidden(second);
        default:
            return false;
    }
}

}  // namespace kestrel
