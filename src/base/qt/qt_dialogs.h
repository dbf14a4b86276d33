// The desktop's dialogs and pointer.
#pragma once

#include <memory>
#include <string>

#include <QWidget>

#include "base/dialogs.h"

namespace kestrel {

class QtDialogs : public Dialogs {
  public:
    bool message(const MessageBox& box) override;
    std::string input(const InputBox& box) override;
    FileChoice openFile(const FileDialog& dialog) override;
    FileChoice saveFile(const FileDialog& dialog) override;
    std::unique_ptr<PrintJob> print() override;
    void setPointer(Pointer pointer) override;

  private:
    bool hourglass_ = false;
};

}  // namespace kestrel
