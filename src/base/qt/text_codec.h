// Where the single bytes of files become characters of windows, and back.
#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace kestrel {

// Bytes of a file as characters: UTF-8 where they are that, else the Japanese code page 932, in
// which the older analysers write, else Latin-1. No byte sequence fails.
QString toWindow(std::string_view bytes);

// Characters as bytes: the shortest of code page 932, Latin-1 and UTF-8 that `toWindow` turns into
// the same characters again. A text that came from a file thus goes back in the bytes it had.
std::string fromWindow(const QString& text);

}  // namespace kestrel
