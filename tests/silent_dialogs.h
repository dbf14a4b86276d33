// Dialogs for code that is measured or fuzzed: nobody is asked and nothing is shown.
#pragma once

#include <memory>
#include <string>

#include "base/dialogs.h"

namespace kestrel::test {

class SilentDialogs : public Dialogs {
  public:
    bool message(const MessageBox&) override { return true; }
    std::string input(const InputBox&) override { return {}; }
    std::optional<std::size_t> choose(const ChoiceBox& box) override { return box.chosen; }
    FileChoice openFile(const FileDialog&) override { return {}; }
    FileChoice saveFile(const FileDialog&) override { return {}; }
    PageLayout pageLayout() override { return a4Page; }
    std::unique_ptr<PrintJob> print(const std::string&) override { return nullptr; }
    void setPointer(Pointer) override {}
};

}  // namespace kestrel::test
