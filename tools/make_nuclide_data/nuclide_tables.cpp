#include "make_nuclide_data/nuclide_tables.h"

#include <functional>
#include <stdexcept>
#include <string_view>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/number_text.h"

namespace kestrel {
namespace {

std::vector<std::string> fieldsOf(std::string_view line) {
    std::vector<std::string> fields;
    std::size_t begin = 0;
    while (true) {
        const std::size_t comma = line.find(',', begin);
        fields.emplace_back(line.substr(begin, comma - begin));
        if (comma == std::string_view::npos)
            return fields;
        begin = comma + 1;
    }
}

// Decay modes such as "EC,B+" stand in double quotes, with their comma.
std::vector<std::string> withQuotesJoined(std::vector<std::string> parts) {
    std::vector<std::string> fields;
    bool open = false;
    for (std::string& part : parts) {
        const bool quote = part.find('"') != std::string::npos && part.find('"') == part.rfind('"');
        if (open)
            fields.back() += "," + part;
        else
            fields.push_back(std::move(part));
        open = open != quote;
    }
    for (std::string& field : fields)
        std::erase(field, '"');
    return fields;
}

std::int32_t whole(const std::string& field) {
    return toInt32(parseLeadingNumber(field));
}

void readCsv(const std::string& path, std::size_t columns,
             const std::function<void(const std::vector<std::string>&)>& add) {
    InputFile file(path);
    LineReader reader(file);
    reader.require();
    std::string_view line;
    for (int number = 2; reader.next(line); ++number) {
        const std::vector<std::string> fields = withQuotesJoined(fieldsOf(line));
        if (fields.size() != columns)
            throw std::runtime_error(path + ", line " + std::to_string(number) +
                                     ": wrong number of fields");
        add(fields);
    }
}

}  // namespace

NuclideTables readNuclideTables(const std::string& folder) {
    constexpr std::size_t nuclideColumns = 11;
    constexpr std::size_t lineColumns = 7;
    NuclideTables tables;
    readCsv(folder + "/nuclides.csv", nuclideColumns, [&](const std::vector<std::string>& f) {
        tables.nuclides.push_back({whole(f[0]), f[1], whole(f[2]), whole(f[3]), whole(f[4]), f[5],
                                   parseLeadingNumber(f[6]), f[7], parseLeadingNumber(f[8]),
                                   parseLeadingNumber(f[9]), f[10]});
    });
    readCsv(folder + "/lines.csv", lineColumns, [&](const std::vector<std::string>& f) {
        tables.lines.push_back({whole(f[0]), whole(f[1]), parseLeadingNumber(f[2]),
                                parseLeadingNumber(f[3]), f[4], f[5], f[6]});
    });
    return tables;
}

}  // namespace kestrel
