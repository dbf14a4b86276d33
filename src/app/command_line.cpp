#include "app/command_line.h"

#include <string_view>

#include "version.h"

namespace kestrel {
namespace {

constexpr std::string_view usage =
    "Usage: kestrel [FILE]\n"
    "Shows the gamma-ray spectrum in FILE, a path or a file: URL.\n"
    "\n"
    "  --help     shows this\n"
    "  --version  shows the version\n"
    "  --         what follows is a file, whatever it begins with\n";

std::string versionText() {
    return "Kestrel " + std::to_string(versionMajor) + "." + std::to_string(versionMinor) + "." +
           std::to_string(versionRevision) + "\n";
}

CommandLine ending(int status, std::string answer) {
    return {.file = {}, .ends = true, .status = status, .answer = std::move(answer)};
}

CommandLine notUnderstood(const std::string& why) {
    return ending(2, "kestrel: " + why + "\nTry: kestrel --help\n");
}

}  // namespace

CommandLine readCommandLine(std::span<char* const> arguments) {
    CommandLine line;
    bool optionsEnded = false;
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const std::string_view argument(arguments[i]);
        const bool isOption = !optionsEnded && argument.starts_with('-') && argument.size() > 1;
        if (isOption && argument == "--")
            optionsEnded = true;
        else if (isOption && (argument == "--help" || argument == "-h"))
            return ending(0, std::string(usage));
        else if (isOption && argument == "--version")
            return ending(0, versionText());
        else if (isOption)
            return notUnderstood("there is no option " + std::string(argument));
        else if (!line.file.empty())
            return notUnderstood("one file can be opened, here are two: " + line.file + ", " +
                                 std::string(argument));
        else
            line.file = argument;
    }
    return line;
}

}  // namespace kestrel
