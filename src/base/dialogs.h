// What the core asks of the desktop: message and input boxes, file and printer dialogs, the
// pointer.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/canvas.h"
#include "base/page_layout.h"

namespace kestrel {

inline constexpr const char* applicationTitle = "Kestrel";

enum class Icon { None, Question, Exclamation };
enum class Buttons { Ok, OkCancel };
enum class Pointer { Default, Hourglass };

struct MessageBox {
    std::string text = {};
    std::string title = applicationTitle;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    std::string details = {};  // a second, smaller text, such as the path of a file
};

struct InputBox {
    std::string prompt;
    std::string title;
    bool isNumber = false;  // a comma typed is a point
};

// One of several, by a list.
struct ChoiceBox {
    std::string title;
    std::string prompt;
    std::vector<std::string> items;
    std::size_t chosen = 0;  // at first
};

struct FileFilter {
    std::string text;
    std::string pattern;
};

struct FileDialog {
    std::string title;
    std::vector<FileFilter> filters;
    int filterIndex = 1;        // counted from 1
    std::string folder;         // empty: the current one
    std::string fileName = {};  // preselected, so that Enter takes it
};

struct FileChoice {
    std::string path;     // empty when cancelled
    int filterIndex = 1;  // as the user left it, also when cancelled
};

// A document being printed, in the fixed-pitch font of 9 points. Ending it sends it to the printer
// or writes its file; one that is destroyed without that is given up. Faults of all calls: Printer;
// of endDocument also those of replaceFile.
class PrintJob {
  public:
    virtual ~PrintJob() = default;
    // The part of the page inside its margins; its newPage() goes on with the next page.
    virtual Canvas& canvas() = 0;
    virtual PageLayout layout() const = 0;
    virtual void endDocument() = 0;
};

class Dialogs {
  public:
    virtual ~Dialogs() = default;

    // True for OK.
    virtual bool message(const MessageBox& box) = 0;
    // The text typed; empty when cancelled.
    virtual std::string input(const InputBox& box) = 0;
    // The index of an item; none when cancelled.
    virtual std::optional<std::size_t> choose(const ChoiceBox& box) = 0;
    // A chosen file's folder becomes the current directory of the process.
    virtual FileChoice openFile(const FileDialog& dialog) = 0;
    virtual FileChoice saveFile(const FileDialog& dialog) = 0;
    // The page that the next print will use unless the user chooses another.
    virtual PageLayout pageLayout() = 0;
    // Lets the user choose a printer or a file. Null when cancelled. Faults: Printer.
    virtual std::unique_ptr<PrintJob> print(const std::string& documentName) = 0;

    virtual void setPointer(Pointer pointer) = 0;
};

}  // namespace kestrel
