#include "nuclide/jet/expression.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "base/text.h"
#include "nuclide/jet/expression_terms.h"
#include "nuclide/jet/expression_tokens.h"

namespace kestrel::jet {
namespace {

// Of an expression in a message.
constexpr std::size_t longestQuote = 100;

bool isOneOf(std::string_view name, std::initializer_list<std::string_view> words) {
    return std::ranges::any_of(
        words, [&](std::string_view word) { return equalIgnoringCase(name, word); });
}

class Parser {
  public:
    Parser(const std::string& expression, const KindOf& kindOf)
        : expression_(expression), kindOf_(kindOf), tokens_(tokensOf(expression)) {}

    Term parse() {
        Term term = either();
        if (!at(Token::Kind::End))
            refuse("is not understood at " + token().text);
        return term;
    }

  private:
    [[noreturn]] void refuse(const std::string& why) const {
        throw QueryError("its expression " + expression_.substr(0, longestQuote) + " " + why);
    }
    [[noreturn]] void refuseWord(std::string_view word) const {
        refuse("has " + std::string(word) + ", which is not translated");
    }

    const Token& token() const { return tokens_[next_]; }
    bool at(Token::Kind kind) const { return token().kind == kind; }
    bool atSign(std::string_view sign) const {
        return at(Token::Kind::Sign) && token().text == sign;
    }
    bool atWord(std::string_view word) const {
        return at(Token::Kind::Name) && equalIgnoringCase(token().text, word);
    }
    bool take(bool isThere) {
        next_ += isThere ? 1 : 0;
        return isThere;
    }
    bool takeSign(std::string_view sign) { return take(atSign(sign)); }
    bool takeWord(std::string_view word) { return take(atWord(word)); }
    void require(std::string_view sign) {
        if (!takeSign(sign))
            refuse("lacks a " + std::string(sign));
    }
    void refuseWords(std::initializer_list<std::string_view> words) const {
        for (const std::string_view word : words) {
            if (atWord(word))
                refuseWord(word);
        }
    }

    Term made(std::string text, Answer answer) const {
        if (text.size() > longestText)
            refuse("is too long");
        return {.text = std::move(text), .answer = answer, .standsAlone = false};
    }
    Term joined(const Term& left, const std::string& sign, const Term& right, Answer answer) const {
        return made(operand(left) + " " + sign + " " + operand(right), answer);
    }

    // Of numbers, And, Or and Not work bit by bit in Access.
    Term condition(const Term& term, std::string_view word) const {
        if (term.answer != Answer::Condition && term.answer != Answer::Logical)
            refuse("has " + std::string(word) + " of what is no condition");
        return term;
    }

    Term either() {
        Term left = both();
        while (takeWord("Or"))
            left = joined(condition(left, "Or"), "OR", condition(both(), "Or"), Answer::Condition);
        refuseWords({"Xor", "Eqv", "Imp"});
        return left;
    }
    Term both() {
        Term left = negated();
        while (takeWord("And"))
            left = joined(condition(left, "And"), "AND", condition(negated(), "And"),
                          Answer::Condition);
        return left;
    }
    Term negated() {
        const Depth depth(*this);
        if (!takeWord("Not"))
            return comparison();
        return made("NOT " + operand(condition(negated(), "Not")), Answer::Condition);
    }

    Term comparison() {
        Term left = concatenation();
        while (true) {
            const bool isNot = takeWord("Not");
            const std::string no = isNot ? "NOT " : "";
            if (takeWord("Like"))
                left = like(value(left), no);
            else if (takeWord("Between"))
                left = between(value(left), no);
            else if (takeWord("In"))
                left = in(value(left), no);
            else if (isNot)
                refuse("has Not at a place that is not understood");
            else if (takeWord("Is"))
                left = isNull(value(left));
            else if (const std::string sign = takeComparison(); !sign.empty())
                left = compared(value(left), sign, value(concatenation()));
            else
                return left;
        }
    }
    std::string takeComparison() {
        for (const char* sign : {"=", "<>", "<=", ">=", "<", ">"}) {
            if (takeSign(sign))
                return sign;
        }
        return {};
    }

    void requireOneKind(const Term& left, const Term& right) const {
        if ((left.answer == Answer::Text && isNumber(right)) ||
            (isNumber(left) && right.answer == Answer::Text))
            refuse("compares a text with a number");
    }
    Term compared(const Term& left, const std::string& sign, const Term& right) const {
        requireOneKind(left, right);
        Term term = joined(left, sign, right, Answer::Condition);
        term.text += collation(left, right);
        return term;
    }
    Term like(const Term& left, const std::string& no) {
        const Term pattern = concatenation();
        if (!pattern.literal || pattern.literal->find("[^") != std::string::npos)
            refuse("has Like with a pattern that is not translated");
        if (left.answer == Answer::Fraction || left.answer == Answer::Logical)
            refuse("has Like of what is no text");
        return made(
            "lower(" + left.text + ") " + no + "GLOB " + quotedText(globPattern(*pattern.literal)),
            Answer::Condition);
    }
    // Access takes the bounds in either order.
    Term between(const Term& left, const std::string& no) {
        const Term low = concatenation();
        if (!takeWord("And"))
            refuse("has Between without And");
        const Term high = concatenation();
        if (!low.number || !high.number || *low.number > *high.number)
            refuse("has Between with bounds that are no rising numbers");
        return made(operand(left) + " " + no + "BETWEEN " + low.text + " AND " + high.text,
                    Answer::Condition);
    }
    Term in(const Term& left, const std::string& no) {
        require("(");
        std::string list;
        do {
            const Term item = value(concatenation());
            requireOneKind(left, item);
            list += (list.empty() ? "" : ", ") + item.text;
        } while (takeSign(","));
        require(")");
        return made(operand(left) + collation(left, left) + " " + no + "IN (" + list + ")",
                    Answer::Condition);
    }
    Term isNull(const Term& left) {
        const bool isNot = takeWord("Not");
        if (!takeWord("Null"))
            refuse("has Is without Null");
        return made(operand(left) + (isNot ? " IS NOT NULL" : " IS NULL"), Answer::Condition);
    }

    // Null counts as an empty text beside another.
    Term concatenation() {
        Term left = sum();
        while (takeSign("&")) {
            const Term a = joinable(left);
            const Term b = joinable(sum());
            const std::string both = "coalesce(" + a.text + ", '') || coalesce(" + b.text + ", '')";
            left = made(a.literal || b.literal ? both
                                               : "CASE WHEN coalesce(" + a.text + ", " + b.text +
                                                     ") IS NOT NULL THEN " + both + " END",
                        Answer::Text);
        }
        return left;
    }
    // Fractions and logical values have other texts in Access.
    Term joinable(const Term& term) const {
        if (term.answer != Answer::Text && term.answer != Answer::Whole)
            refuse("has & with what is neither a text nor a whole number");
        return term;
    }

    Term sum() {
        Term left = product();
        while (atSign("+") || atSign("-")) {
            const std::string sign = token().text;
            ++next_;
            const Term a = value(left);
            const Term b = value(product());
            const bool texts = a.answer == Answer::Text && b.answer == Answer::Text;
            if (texts && sign == "+") {
                left = joined(a, "||", b, Answer::Text);
                continue;
            }
            requireNumbers(a, b, sign);
            left = joined(a, sign, b, common(a, b));
        }
        return left;
    }
    Term product() {
        Term left = signedTerm();
        while (atSign("*") || atSign("/")) {
            const bool division = atSign("/");
            ++next_;
            const Term a = value(left);
            const Term b = value(signedTerm());
            requireNumbers(a, b, division ? "/" : "*");
            // SQLite cuts the quotient of whole numbers.
            left = division ? joined(a, "* 1.0 /", b, Answer::Fraction)
                            : joined(a, "*", b, common(a, b));
        }
        for (const std::string_view sign : {"\\", "^"}) {
            if (atSign(sign))
                refuseWord(sign);
        }
        refuseWords({"Mod"});
        return left;
    }
    void requireNumbers(const Term& a, const Term& b, const std::string& sign) const {
        if (a.answer == Answer::Text || b.answer == Answer::Text ||
            (sign == "+" && (a.answer == Answer::Other || b.answer == Answer::Other)))
            refuse("has " + sign + " with what may be no number");
    }
    Term signedTerm() {
        const Depth depth(*this);
        if (takeSign("+"))
            return signedTerm();
        if (!takeSign("-"))
            return primary();
        const Term term = value(signedTerm());
        requireNumbers(term, term, "-");
        Term negative =
            made("-" + operand(term), term.answer == Answer::Logical ? Answer::Whole : term.answer);
        if (term.number)
            negative.number = -*term.number;
        return negative;
    }

    Term primary() {
        const Token first = token();
        ++next_;
        switch (first.kind) {
            case Token::Kind::Number:
                return numberTerm(first.text);
            case Token::Kind::Text:
                return {
                    .text = quotedText(first.text), .answer = Answer::Text, .literal = first.text};
            case Token::Kind::Bracketed:
                return column(first.text);
            case Token::Kind::Name:
                return atSign("(") ? call(first.text) : named(first.text);
            case Token::Kind::Sign:
                if (first.text == "(")
                    return inParentheses();
                if (first.text == "*")
                    return {.text = "*"};
                break;
            default:
                break;
        }
        refuse("is not understood" + (first.text.empty() ? "" : " at " + first.text));
    }
    Term numberTerm(const std::string& digits) const {
        const bool whole = positionOfOther(digits, "0123456789") == 0;
        try {
            return {.text = digits,
                    .answer = whole ? Answer::Whole : Answer::Fraction,
                    .number = parseLeadingNumber(digits)};
        } catch (const RuntimeFault&) {
            refuse("has a number that is too large");
        }
    }
    Term inParentheses() {
        Term term = either();
        require(")");
        return term;
    }

    Term named(const std::string& name) {
        const bool alone = !atSign(".") && !atSign("!");
        if (alone && isOneOf(name, {"True", "Yes", "On"}))
            return {.text = "-1", .answer = Answer::Logical, .standsAlone = false};
        if (alone && isOneOf(name, {"False", "No", "Off"}))
            return {.text = "0", .answer = Answer::Logical};
        if (equalIgnoringCase(name, "Null"))
            return {.text = "NULL"};
        return column(name);
    }

    Term column(const std::string& first) {
        std::vector<std::string> path = {first};
        while (takeSign(".") || takeSign("!")) {
            if (takeSign("*"))
                return {.text = bracketed(path.back()) + ".*"};
            if (!at(Token::Kind::Name) && !at(Token::Kind::Bracketed))
                refuse("lacks a name behind a point");
            path.push_back(token().text);
            ++next_;
        }
        if (path.size() > 2)
            refuse("has a name of more than two parts");
        if (isOneOf(path.back(), {"rowid", "oid", "_rowid_"}))  // SQLite's, for what no table has
            refuseWord(path.back());
        const std::string input = path.size() == 2 ? path.front() : "";
        return {.text = (input.empty() ? "" : bracketed(input) + ".") + bracketed(path.back()),
                .answer = answerOf(kindOf_ ? kindOf_(input, path.back()) : ColumnKind::Other),
                .isColumn = true};
    }

    Term call(const std::string& name) {
        const Depth depth(*this);
        require("(");
        std::vector<Term> arguments;
        if (!atSign(")")) {
            do
                arguments.push_back(either());
            while (takeSign(","));
        }
        require(")");
        if (equalIgnoringCase(name, "IIf") && arguments.size() == 3)
            return choice(arguments);
        if (equalIgnoringCase(name, "IsNull") && arguments.size() == 1)
            return made(operand(arguments[0]) + " IS NULL", Answer::Condition);
        if (equalIgnoringCase(name, "Nz") && arguments.size() == 2)
            return made(
                "coalesce(" + value(arguments[0]).text + ", " + value(arguments[1]).text + ")",
                value(arguments[0]).answer);
        if (const Function* function = functionNamed(name); function && arguments.size() == 1)
            return made(
                std::string(function->counterpart) + "(" + value(arguments[0]).text + ")",
                function->answer == Answer::Other ? value(arguments[0]).answer : function->answer);
        refuse("has the function " + name + ", which is not translated");
    }
    Term choice(const std::vector<Term>& arguments) const {
        const Term yes = value(arguments[1]);
        const Term no = value(arguments[2]);
        return made(
            "CASE WHEN " + arguments[0].text + " THEN " + yes.text + " ELSE " + no.text + " END",
            yes.answer == no.answer ? yes.answer : Answer::Other);
    }

    // Calls nest as deep as the text says; the stack does not.
    class Depth {
      public:
        explicit Depth(Parser& parser) : parser_(parser) {
            constexpr int deepest = 60;
            if (++parser_.depth_ > deepest)
                parser_.refuse("is nested too deeply");
        }
        ~Depth() { --parser_.depth_; }
        Depth(const Depth&) = delete;
        Depth& operator=(const Depth&) = delete;

      private:
        Parser& parser_;
    };

    const std::string& expression_;
    const KindOf& kindOf_;
    std::vector<Token> tokens_;
    std::size_t next_ = 0;
    int depth_ = 0;
};

}  // namespace

std::string valueText(const std::string& expression, const KindOf& kindOf) {
    return value(Parser(expression, kindOf).parse()).text;
}

std::string conditionText(const std::string& expression, const KindOf& kindOf) {
    return Parser(expression, kindOf).parse().text;
}

}  // namespace kestrel::jet
