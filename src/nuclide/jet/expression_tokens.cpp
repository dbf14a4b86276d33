#include "nuclide/jet/expression_tokens.h"

#include <array>
#include <string_view>

#include "base/text.h"
#include "nuclide/jet/query_error.h"

namespace kestrel::jet {
namespace {

// Those of two characters first.
constexpr std::array<std::string_view, 18> signs = {
    "<>", "<=", ">=", "(", ")", ",", ".", "!", "*", "/", "+", "-", "&", "=", "<", ">", "^", "\\"};

bool beginsName(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || c == '_' || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isInName(char c) {
    return beginsName(c) || isDigit(c);
}

class Scanner {
  public:
    explicit Scanner(const std::string& expression) : expression_(expression), rest_(expression) {}

    Token next() {
        while (!rest_.empty() && (rest_.front() == ' ' || rest_.front() == '\t' ||
                                  rest_.front() == '\r' || rest_.front() == '\n'))
            rest_.remove_prefix(1);
        if (rest_.empty())
            return {};
        const char c = rest_.front();
        if (c == '"' || c == '\'')
            return {Token::Kind::Text, quoted(c)};
        if (c == '[')
            return {Token::Kind::Bracketed, bracketed()};
        if (isDigit(c) || (c == '.' && rest_.size() > 1 && isDigit(rest_[1]) && !behindName_))
            return {Token::Kind::Number, number()};
        if (beginsName(c))
            return {Token::Kind::Name, take(run(isInName))};
        return {Token::Kind::Sign, sign()};
    }

    // A point behind a name or a bracket parts it from the next name.
    void noteToken(const Token& token) {
        behindName_ = token.kind == Token::Kind::Name || token.kind == Token::Kind::Bracketed;
    }

  private:
    [[noreturn]] void refuse(const std::string& why) const {
        constexpr std::size_t longestQuote = 100;
        throw QueryError("its expression " + expression_.substr(0, longestQuote) + " " + why);
    }

    template <typename IsMember>
    std::size_t run(IsMember isMember) const {
        std::size_t count = 0;
        while (count < rest_.size() && isMember(rest_[count]))
            ++count;
        return count;
    }

    std::string take(std::size_t count) {
        std::string text(rest_.substr(0, count));
        rest_.remove_prefix(count);
        return text;
    }

    // The quote itself stands twice inside.
    std::string quoted(char quote) {
        std::string text;
        for (std::size_t i = 1; i < rest_.size(); ++i) {
            if (rest_[i] == quote && (i + 1 == rest_.size() || rest_[i + 1] != quote)) {
                rest_.remove_prefix(i + 1);
                return text;
            }
            if (rest_[i] == quote)
                ++i;
            text += rest_[i];
        }
        refuse("has no end");
    }

    std::string bracketed() {
        const std::size_t end = rest_.find(']');
        if (end == std::string_view::npos)
            refuse("has no end");
        const std::string text = take(end + 1);
        return text.substr(1, text.size() - 2);
    }

    std::string number() {
        std::string text = take(run(isDigit));
        if (!rest_.empty() && rest_.front() == '.') {
            text += take(1);
            text += take(run(isDigit));
        }
        if (rest_.size() > 1 && (rest_[0] == 'E' || rest_[0] == 'e')) {
            const bool isSigned = rest_[1] == '+' || rest_[1] == '-';
            if (rest_.size() > (isSigned ? 2U : 1U) && isDigit(rest_[isSigned ? 2 : 1])) {
                text += take(isSigned ? 2 : 1);
                text += take(run(isDigit));
            }
        }
        if (!rest_.empty() && isInName(rest_.front()))
            refuse("has letters behind a number");
        return text;
    }

    std::string sign() {
        for (const std::string_view comment : {"--", "/*"}) {
            if (rest_.starts_with(comment))
                refuse("has a comment");
        }
        for (const std::string_view sign : signs) {
            if (rest_.starts_with(sign))
                return take(sign.size());
        }
        if (rest_.front() == '#')
            refuse("has a date");
        refuse("has the sign " + std::string(rest_.substr(0, 1)));
    }

    const std::string& expression_;
    std::string_view rest_;
    bool behindName_ = false;
};

}  // namespace

std::vector<Token> tokensOf(const std::string& expression) {
    Scanner scanner(expression);
    std::vector<Token> tokens;
    do {
        tokens.push_back(scanner.next());
        if (tokens.back().text.find('\0') != std::string::npos)
            throw QueryError("its expression has a character of code 0");
        scanner.noteToken(tokens.back());
    } while (tokens.back().kind != Token::Kind::End);
    return tokens;
}

}  // namespace kestrel::jet
