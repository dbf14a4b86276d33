// What a database that may come from anywhere is allowed to do: nothing but the reading of its
// tables, within bounds.
#pragma once

struct sqlite3;

namespace kestrel {

// Bounds of patterns, expressions and statements, far above those of the four queries.
void limitWork(sqlite3* handle);

// Of the longest text, blob and row, in bytes.
inline constexpr int longestValue = 1 << 15;

// Of what SQLite asks an authorizer: whether it is the reading of a table or view, or a function
// without effects. Everything else is for others.
bool isReading(int action, const char* first, const char* second);

}  // namespace kestrel
