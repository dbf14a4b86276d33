// The desktop's dialogs and pointer.
#pragma once

#include <memory>
#include <string>

#include <QPrinter>
#include <QWidget>

#include "base/dialogs.h"

namespace kestrel {

class QtDialogs : public Dialogs {
  public:
    bool message(const MessageBox& box) override;
    std::string input(const InputBox& box) override;
    std::optional<std::size_t> choose(const ChoiceBox& box) override;
    FileChoice openFile(const FileDialog& dialog) override;
    FileChoice saveFile(const FileDialog& dialog) override;
    PageLayout pageLayout() override;
    std::unique_ptr<PrintJob> print(const std::string& documentName) override;
    void setPointer(Pointer pointer) override;

  private:
    QPrinter& printer();

    std::unique_ptr<QPrinter> printer_;  // keeps what the user chose last
    bool hourglass_ = false;
};

}  // namespace kestrel
