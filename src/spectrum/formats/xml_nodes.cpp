#include "spectrum/formats/xml_nodes.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t mostLevels = 8;
constexpr std::size_t longestName = 100;

std::string_view front(const char* text, std::size_t most) {
    return {text, ::strnlen(text, most)};
}

template <typename Range>
auto firstNamed(const Range& range, std::string_view name) {
    std::size_t looked = 0;
    for (const auto& one : range) {
        if (localName(one.name()) == name)
            return one;
        if (++looked == mostSiblings)
            break;
    }
    return std::remove_cvref_t<decltype(*range.begin())>{};
}

}  // namespace

std::string_view localName(const char* name) {
    const std::string_view text = front(name, longestName);
    const std::size_t colon = text.rfind(':');
    return colon == std::string_view::npos ? text : text.substr(colon + 1);
}

bool isNamed(const XmlNode& node, std::string_view name) {
    return localName(node.name()) == name;
}

XmlNode childOf(const XmlNode& parent, std::string_view name) {
    return firstNamed(parent.children(), name);
}

std::string_view textOfChild(const XmlNode& parent, std::initializer_list<std::string_view> names,
                             std::size_t longest) {
    for (const std::string_view name : names) {
        if (const XmlNode child = childOf(parent, name))
            return trimSpace(front(child.child_value(), longest));
    }
    return {};
}

std::vector<XmlNode> levelsOf(XmlNode node) {
    std::vector<XmlNode> levels;
    for (; node && levels.size() < mostLevels; node = node.parent())
        levels.push_back(node);
    return levels;
}

std::string_view textAround(const XmlNode& node, std::initializer_list<std::string_view> names) {
    for (const XmlNode& around : levelsOf(node)) {
        if (const std::string_view text = textOfChild(around, names); !text.empty())
            return text;
    }
    return {};
}

XmlNode ancestor(const XmlNode& node, std::string_view name) {
    const std::vector<XmlNode> levels = levelsOf(node);
    const auto found =
        std::ranges::find_if(levels, [&](const XmlNode& level) { return isNamed(level, name); });
    return found == levels.end() ? XmlNode() : *found;
}

std::string_view ownText(const XmlNode& node) {
    return trimSpace(front(node.child_value(), longestValue));
}

std::string_view attributeOf(const XmlNode& node, std::string_view name) {
    return trimSpace(front(firstNamed(node.attributes(), name).value(), longestValue));
}

}  // namespace kestrel
