#include "nuclide/queries.h"

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr double gammaHalfWidth = 2.0;  // keV

// A typed name may hold a quote; in the text of a query it has to stand twice.
std::string quoted(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result.append(c == '\'' ? 2 : 1, c);
    return result + "'";
}

}  // namespace

std::string gammaLinesQuery(double centre) {
    return "select * from eng where (eng_eng >" + signedNumber(centre - gammaHalfWidth) +
           " and eng_eng <" + signedNumber(centre + gammaHalfWidth) +
           " ) and eng_br > 0.1 and eng_rad = 'G' order by eng_eng asc ;";
}

std::string nuclideQuery(std::string_view element, std::string_view massText, bool isomeric) {
    return "select * from q_nuc where elm_name =" + quoted(trimBlanks(element)) +
           " and nc_a = " + plainNumber(parseLeadingNumber(massText)) + " and nc_i_num " +
           (isomeric ? "> 0;" : "= 0;");
}

std::string linesOfNuclidesQuery(std::span<const std::int32_t> ids) {
    std::string text = "select * from q_eng_order_id2 where ";
    for (const std::int32_t id : ids)
        text += "eng_nc =" + signedNumber(std::int64_t{id}) + " or ";
    constexpr std::size_t lastOr = 3;
    text.resize(text.size() - lastOr);
    return text;
}

}  // namespace kestrel
