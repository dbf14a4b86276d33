#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace kestrel {
namespace {

char upper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
bool sameLetter(char a, char b) {
    return upper(a) == upper(b);
}

std::size_t lastOtherThanLetter(std::string_view text) {
    std::size_t n = text.size();
    while (n > 0 && upper(text[n - 1]) != lower(text[n - 1]))
        --n;
    return n - 1;
}

// As findIgnoringCase, by way of the places where part[sign] stands.
std::size_t findBySign(std::string_view text, std::string_view part, std::size_t sign,
                       std::size_t from) {
    for (std::size_t at = text.find(part[sign], from + sign); at != std::string_view::npos;
         at = text.find(part[sign], at + 1)) {
        if (equalIgnoringCase(text.substr(at - sign, part.size()), part))
            return at - sign;
    }
    return std::string_view::npos;
}

bool isNumber(std::string_view text) {
    if (text.starts_with('+'))
        text.remove_prefix(1);
    double value = 0;
    const char* const end = text.data() + text.size();
    return std::from_chars(text.data(), end, value).ptr == end;
}

// std::string_view::npos becomes 0.
std::size_t countedFromOne(std::size_t index) {
    return index + 1;
}

}  // namespace

std::string_view trimBlanksLeft(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

std::string_view trimBlanks(std::string_view text) {
    const std::string_view left = trimBlanksLeft(text);
    return left.substr(0, countedFromOne(left.find_last_not_of(' ')));
}

std::string withoutControls(std::string_view text) {
    const auto isControl = [](char c) {
        const auto code = static_cast<unsigned char>(c);
        return code < 0x20 || code == 0x7F;
    };
    std::string result(text);
    std::ranges::replace_if(result, isControl, ' ');
    return result;
}

std::string tableField(std::string_view text) {
    const std::string field = withoutControls(text);
    const std::string_view content = trimBlanks(field);
    const bool signInFront = positionOfAny(content.substr(0, 1), "=+-@") == 1;
    return signInFront && content.size() > 1 && !isNumber(content) ? "'" + field : field;
}

std::string csvField(std::string_view text) {
    std::string field = tableField(text);
    if (field.find_first_of(",;\"") == std::string::npos)
        return field;
    std::string quoted = "\"";
    for (const char c : field)
        quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

std::string_view upToNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

std::string toUpper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upper);
    return result;
}

std::string toLower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lower);
    return result;
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), sameLetter);
}

std::size_t findIgnoringCase(std::string_view text, std::string_view part, std::size_t from) {
    if (from > text.size())
        return std::string_view::npos;
    // A character without letter case is looked for first: the quick search for a single byte
    // passes over most texts.
    const std::size_t sign = lastOtherThanLetter(part);
    if (sign != std::string_view::npos)
        return findBySign(text, part, sign, from);
    const std::string_view rest = text.substr(from);
    const auto found = std::search(rest.begin(), rest.end(), part.begin(), part.end(), sameLetter);
    if (found == rest.end() && !part.empty())
        return std::string_view::npos;
    return from + static_cast<std::size_t>(found - rest.begin());
}

bool containsIgnoringCase(std::string_view text, std::string_view part) {
    return findIgnoringCase(text, part) != std::string_view::npos;
}

std::size_t positionOfAny(std::string_view text, std::string_view set) {
    return countedFromOne(text.find_first_of(set));
}

std::size_t positionOfOther(std::string_view text, std::string_view set) {
    return countedFromOne(text.find_first_not_of(set));
}

std::string_view fromCharacter(std::string_view text, std::size_t n) {
    return text.substr(std::min(n - 1, text.size()));
}

std::string charactersPadded(std::string_view text, std::size_t n, std::size_t count) {
    std::string result(fromCharacter(text, n).substr(0, count));
    result.resize(count, ' ');
    return result;
}

std::string rightAligned(std::string_view text, std::size_t width) {
    const std::string_view kept = text.substr(0, width);
    return std::string(width - kept.size(), ' ').append(kept);
}

std::string_view lastCharacters(std::string_view text, std::size_t count) {
    return text.substr(text.size() - std::min(count, text.size()));
}

}  // namespace kestrel
