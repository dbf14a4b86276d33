// Files that come from outside: named in the program's arguments, or dropped on a window.
#pragma once

#include <string>

#include <QMimeData>
#include <QStringList>

namespace kestrel {

// The full path of the first argument that is no option, empty where there is none. It may be a
// file: URL; a relative path counts from the current directory. The program's own name comes first
// in `arguments`; "--" ends the options.
std::string pathInArguments(const QStringList& arguments);

// The full path of the first local file of what is being dropped, empty where there is none.
std::string droppedPath(const QMimeData& data);

}  // namespace kestrel
