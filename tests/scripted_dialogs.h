// Dialogs that answer from a script and keep what they were asked.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/dialogs.h"

namespace kestrel::test {

class ScriptedDialogs : public Dialogs {
  public:
    bool message(const MessageBox& box) override {
        messages.push_back(box);
        if (duringMessage)
            duringMessage();
        return messageAnswer;
    }
    std::string input(const InputBox& box) override {
        inputs.push_back(box);
        return inputAnswer;
    }
    std::optional<std::size_t> choose(const ChoiceBox& box) override {
        choices.push_back(box);
        return messageAnswer ? std::optional(rowAnswer.value_or(box.chosen)) : std::nullopt;
    }
    FileChoice openFile(const FileDialog& dialog) override {
        fileDialogs.push_back(dialog);
        return fileAnswer;
    }
    FileChoice saveFile(const FileDialog& dialog) override { return openFile(dialog); }
    PageLayout pageLayout() override { return a4Page; }
    std::unique_ptr<PrintJob> print(const std::string& documentName) override {
        printed.push_back(documentName);
        return beginJob ? beginJob() : nullptr;
    }
    void setPointer(Pointer shape) override { pointer = shape; }

    std::vector<MessageBox> messages;
    std::vector<InputBox> inputs;
    std::vector<ChoiceBox> choices;
    std::vector<FileDialog> fileDialogs;
    bool messageAnswer = true;
    std::optional<std::size_t> rowAnswer;
    std::function<void()> duringMessage;
    std::string inputAnswer;
    FileChoice fileAnswer;
    std::vector<std::string> printed;
    std::function<std::unique_ptr<PrintJob>()> beginJob;  // none: cancelled
    Pointer pointer = Pointer::Default;
};

}  // namespace kestrel::test
