#include "nuclide/jet/expression_terms.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/text.h"

namespace kestrel::jet {
namespace {

constexpr std::array functions = {
    Function{"Abs", "abs", Answer::Other},     Function{"Avg", "avg", Answer::Fraction},
    Function{"Count", "count", Answer::Whole}, Function{"LCase", "lower", Answer::Text},
    Function{"Len", "length", Answer::Whole},  Function{"LTrim", "ltrim", Answer::Text},
    Function{"Max", "max", Answer::Other},     Function{"Min", "min", Answer::Other},
    Function{"RTrim", "rtrim", Answer::Text},  Function{"Sum", "sum", Answer::Other},
    Function{"Trim", "trim", Answer::Text},    Function{"UCase", "upper", Answer::Text},
};

}  // namespace

Answer answerOf(ColumnKind kind) {
    switch (kind) {
        case ColumnKind::Logical:
            return Answer::Logical;
        case ColumnKind::Whole:
            return Answer::Whole;
        case ColumnKind::Real:
        case ColumnKind::Decimal:
            return Answer::Fraction;
        case ColumnKind::Text:
            return Answer::Text;
        default:
            return Answer::Other;
    }
}

std::string operand(const Term& term) {
    return term.standsAlone ? term.text : "(" + term.text + ")";
}

Term value(const Term& term) {
    if (term.answer != Answer::Condition)
        return term;
    return {.text = "-" + operand(term), .answer = Answer::Logical, .standsAlone = false};
}

std::string quotedText(std::string_view text) {
    std::string result = "'";
    for (const char c : text)
        result.append(c == '\'' ? 2 : 1, c);
    return result + '\'';
}

bool isNumber(const Term& term) {
    return term.answer == Answer::Whole || term.answer == Answer::Fraction ||
           term.answer == Answer::Logical;
}

std::string globPattern(std::string_view pattern) {
    std::string result;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (pattern[i] == '#')
            result += "[0-9]";
        else if (pattern[i] == '[' && pattern.substr(i).starts_with("[!"))
            result += "[^", ++i;
        else
            result += pattern[i];
    }
    return toLower(result);
}

std::string collation(const Term& left, const Term& right) {
    return left.isColumn || right.isColumn ? "" : " COLLATE NOCASE";
}

Answer common(const Term& a, const Term& b) {
    const bool whole = (a.answer == Answer::Whole || a.answer == Answer::Logical) &&
                       (b.answer == Answer::Whole || b.answer == Answer::Logical);
    return whole ? Answer::Whole : Answer::Fraction;
}

std::string bracketed(const std::string& name) {
    return "[" + name + "]";
}

const Function* functionNamed(std::string_view name) {
    const auto* const found = std::ranges::find_if(
        functions, [&](const Function& one) { return equalIgnoringCase(one.name, name); });
    return found == functions.end() ? nullptr : found;
}

}  // namespace kestrel::jet
