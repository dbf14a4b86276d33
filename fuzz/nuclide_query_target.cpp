// The parts of a stored query of an Access file, in any order and of any kind: the first byte of
// each is its attribute, the next its flag; three texts follow, each ended by a line feed.

#include <algorithm>

#include "fuzz_input.h"
#include "nuclide/jet/stored_query.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::jet;
    std::string_view left = kestrel::fuzz::asText(data, size);
    const auto text = [&left] {
        const std::size_t end = std::min(left.find('\n'), left.size());
        std::string field(left.substr(0, end));
        left.remove_prefix(std::min(end + 1, left.size()));
        return field;
    };
    StoredQuery query{"q", {}};
    while (left.size() > 2) {
        QueryRow row{.attribute = left[0] % 12,
                     .order = std::string(left.substr(1, 1)),
                     .name1 = {},
                     .name2 = {},
                     .expression = {},
                     .flag = left[1] % 40};
        left.remove_prefix(2);
        row.name1 = text();
        row.name2 = text();
        row.expression = text();
        query.rows.push_back(std::move(row));
    }
    try {
        for (const QueryInput& input : inputsOf(query))
            joinsOrSortsBy(query, input.alias, "x");
        kestrel::fuzz::require(selectText(query).size() <= 65536);
    } catch (const QueryError&) {
    }
    return 0;
}
