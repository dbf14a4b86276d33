// Parts of an XML file by their local names: a prefix that nothing declares is passed over. As a
// stranger's file may hold thousands of spectra, so many children, levels and signs are looked
// through for each, and no more.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <pugixml.hpp>
#include <string_view>
#include <vector>

namespace kestrel {

using XmlNode = pugi::xml_node;

// Signs of a text.
inline constexpr std::size_t longestValue = 1000;
// Children or attributes of a node.
inline constexpr std::size_t mostSiblings = 100;

std::string_view localName(const char* name);
bool isNamed(const XmlNode& node, std::string_view name);

// Of the first 100 children; none where it is not among them.
XmlNode childOf(const XmlNode& parent, std::string_view name);

// Texts and attributes come without the blanks at their ends, and empty where there are none.
std::string_view ownText(const XmlNode& node);
std::string_view attributeOf(const XmlNode& node, std::string_view name);

// The text of the first child that has one of the names.
std::string_view textOfChild(const XmlNode& parent, std::initializer_list<std::string_view> names,
                             std::size_t longest = longestValue);

// The node and those around it, from the innermost; at most 8.
std::vector<XmlNode> levelsOf(XmlNode node);

// As textOfChild, of the nearest element that has it: the node itself or one around it.
std::string_view textAround(const XmlNode& node, std::initializer_list<std::string_view> names);

XmlNode ancestor(const XmlNode& node, std::string_view name);

}  // namespace kestrel
