#include "nuclide/nuclide_key.h"

#include <algorithm>

#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::string_view digits = "0123456789";
constexpr std::string_view symbolEnds = " -=0123456789";
constexpr const char* prompt = "Input Nuclide (ex.Eu-152m)";
constexpr std::size_t massWidth = 3;

std::string paddedMass(std::string_view mass) {
    return std::string(massWidth - std::min(mass.size(), massWidth), ' ') + std::string(mass);
}

bool hasLetter(std::string_view text) {
    return std::ranges::any_of(toUpper(text), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// The first letter in upper case, the second as typed, or a blank for symbols of one letter.
std::string symbolOf(std::string_view firstTwo, bool oneLetter) {
    return toUpper(firstTwo.substr(0, 1)) + (oneLetter ? ' ' : firstTwo[1]);
}

// `massAndMark` begins with a digit.
std::string keyOf(const std::string& symbol, std::string_view massAndMark, std::size_t markWidth) {
    const std::size_t q = positionOfOther(massAndMark, digits);
    const std::string_view mass = q == 0 ? massAndMark : massAndMark.substr(0, q - 1);
    const std::string_view mark = q == 0 ? "g" : massAndMark.substr(q - 1, markWidth);
    return symbol + "-" + paddedMass(mass) + std::string(mark);
}

// Where the mass number begins; 0 for a name that is none.
std::size_t massPosition(std::string_view name) {
    return hasLetter(name) ? positionOfAny(name, digits) : 0;
}

}  // namespace

std::string nuclideKey(std::string_view element, std::int32_t mass, std::int32_t isomer) {
    return charactersPadded(trimBlanks(element), 1, 2) + "-" +
           rightAligned(std::to_string(mass), massWidth) +
           (isomer >= 1 ? "m" + std::to_string(isomer) : "g");
}

std::optional<std::string> keyFromWindowName(std::string_view typed) {
    constexpr std::size_t longestMassAndMark = 5;
    const std::string_view name = trimBlanks(typed);
    const std::size_t p = massPosition(name);
    if (p == 0)
        return std::nullopt;
    const std::string firstTwo = charactersPadded(name, 1, 2);
    const std::string symbol = symbolOf(firstTwo, positionOfAny(firstTwo, symbolEnds) == 2);
    return keyOf(symbol, fromCharacter(name, p).substr(0, longestMassAndMark), 2);
}

std::optional<std::string> keyFromPlotName(std::string_view typed) {
    const std::string_view name = trimBlanks(typed);
    const std::size_t p = massPosition(name);
    if (p == 0)
        return std::nullopt;
    const std::string firstTwo = charactersPadded(name, 1, 2);
    const bool oneLetter = symbolEnds.find(firstTwo[1]) != std::string_view::npos;
    return keyOf(symbolOf(firstTwo, oneLetter), fromCharacter(name, p), 1);
}

bool beginsWith(std::string_view key, std::string_view typed) {
    const auto plain = [](std::string_view name) {
        std::string letters = toLower(name);
        std::erase_if(letters, [](char c) { return c == ' ' || c == '-'; });
        return letters;
    };
    return plain(key).starts_with(plain(typed));
}

std::optional<std::string> askNuclideKey(NameRule rule, Dialogs& dialogs) {
    const std::string answer = dialogs.input({.prompt = prompt, .title = "Nuclide"});
    if (answer.empty())
        return std::nullopt;
    std::optional<std::string> key = rule(answer);
    if (!key)
        dialogs.message({.text = prompt, .title = "Error..."});
    return key;
}

}  // namespace kestrel
