// Where the single bytes of files become characters of windows, and back.
#pragma once

#include <string>
#include <string_view>

#include <QString>

namespace kestrel {

// Bytes of a file as characters: UTF-8 where they are that, else the Japanese code page 932, in
// which the older analysers write, else Latin-1. No byte sequence fails.
QString toWindow(std::string_view bytes);

// A text from outside as signs to be read: characters that control a terminal or turn the direction
// of reading show as what they are, so that a name cannot pass for another. Line ends stay.
QString asSigns(const QString& text);
// Bytes of a file likewise, for what is shown and never taken back.
QString toSigns(std::string_view bytes);

// Characters as bytes: the shortest of code page 932, Latin-1 and UTF-8 that `toWindow` turns into
// the same characters again. A text of a file goes back in the bytes it had, but for signs that
// code page 932 has twice: the roman numeral I of the bytes FA 4A goes back as 87 54.
std::string fromWindow(const QString& text);

}  // namespace kestrel
