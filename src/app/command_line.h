// The arguments that the program is started with.
#pragma once

#include <span>
#include <string>

namespace kestrel {

struct CommandLine {
    std::string file;  // to be opened; empty when none is named
    // Where the program ends without a window: what it prints and its exit status, 0 for an answer
    // and 2 for arguments that are not understood.
    bool ends = false;
    int status = 0;
    std::string answer;
};

// --help, --version, or at most one file; "--" ends the options. The toolkit gets none of them: the
// names in a folder, as of "kestrel *", are a stranger's, and its options load programs.
CommandLine readCommandLine(std::span<char* const> arguments);

}  // namespace kestrel
