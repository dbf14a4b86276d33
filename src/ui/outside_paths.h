// Files that come from outside: named in the program's arguments, or dropped on a window.
#pragma once

#include <string>

#include <QMimeData>

namespace kestrel {

// The full path of a file that an argument names by its path, which counts from the current
// directory, or by a file: URL. Empty for an empty one.
std::string fullPathOf(const std::string& argument);

// The full path of the first local file of what is being dropped, empty where there is none.
std::string droppedPath(const QMimeData& data);

}  // namespace kestrel
