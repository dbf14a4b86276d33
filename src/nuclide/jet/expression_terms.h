// The parts of an expression of a stored query, as they have been written for SQLite.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "nuclide/jet/column_kind.h"

namespace kestrel::jet {

// What an expression answers. A condition is 0 or 1 in SQLite, but 0 or -1 in Access.
enum class Answer { Condition, Logical, Whole, Fraction, Text, Other };

struct Term {
    std::string text;
    Answer answer = Answer::Other;
    bool isColumn = false;
    bool standsAlone = true;            // needs no parentheses as an operand
    std::optional<double> number = {};  // of a number that stands there as it is
    std::optional<std::string> literal = {};
};

Answer answerOf(ColumnKind kind);
bool isNumber(const Term& term);
// Of a sum, a difference or a product.
Answer common(const Term& a, const Term& b);

// With the parentheses that it needs beside a sign.
std::string operand(const Term& term);
// As a value: of a condition, -1 or 0.
Term value(const Term& term);

std::string quotedText(std::string_view text);
// Unlike a name in double quotes, one in brackets is never taken for a text.
std::string bracketed(const std::string& name);
// The signs "*", "?", "#" and "[...]" of an Access pattern as GLOB has them, which heeds letter
// case: both sides are taken in small letters.
std::string globPattern(std::string_view pattern);
// What is to stand behind a comparison: texts are compared without regard to letter case, as
// columns of texts are by themselves.
std::string collation(const Term& left, const Term& right);

struct Function {
    std::string_view name;
    std::string_view counterpart;
    Answer answer;  // Other: as its argument
};

// A function that answers the same in both; null where there is none.
const Function* functionNamed(std::string_view name);

}  // namespace kestrel::jet
