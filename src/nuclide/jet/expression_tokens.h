// The words, numbers, texts and signs of an Access expression.
#pragma once

#include <string>
#include <vector>

namespace kestrel::jet {

struct Token {
    enum class Kind { Name, Bracketed, Number, Text, Sign, End };
    Kind kind = Kind::End;
    // Without quotes, brackets and their doubling.
    std::string text;
};

// Ends with a token of the kind End. Throws QueryError for anything else than the above, such as
// comments, backticks and dates.
std::vector<Token> tokensOf(const std::string& expression);

}  // namespace kestrel::jet
