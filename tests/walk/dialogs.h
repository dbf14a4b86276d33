// Dialogs of a walk: answered at random, and at times shown as they are, for the walk to press
// their keys and buttons.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QApplication>

#include "base/qt/qt_dialogs.h"
#include "walk/files.h"

namespace kestrel::walk {

class WalkDialogs : public QtDialogs {
  public:
    WalkDialogs(Random& random, Files& files) : random_(random), files_(files) {}

    bool message(const MessageBox& box) override {
        messages.push_back(box.text);
        if (showsRealOnes())
            return QtDialogs::message(box);
        QApplication::processEvents();
        return !random_.oneIn(3);
    }
    std::string input(const InputBox& box) override {
        ++inputs;
        return showsRealOnes() ? QtDialogs::input(box) : files_.text();
    }
    FileChoice openFile(const FileDialog& dialog) override {
        if (dialog.title != "Open")
            return files_.database();
        const FileChoice choice = files_.spectrum();
        opened = choice.path;
        return choice;
    }
    FileChoice saveFile(const FileDialog&) override {
        wrote = true;
        return files_.output();
    }
    std::unique_ptr<PrintJob> print() override { return nullptr; }

    // What a step has brought.
    std::vector<std::string> messages;
    std::string opened;
    int inputs = 0;
    bool wrote = false;
    void forget() {
        messages.clear();
        opened.clear();
        wrote = false;
    }

    bool modalsAllowed = true;

  private:
    bool showsRealOnes() { return modalsAllowed && random_.oneIn(4); }

    Random& random_;
    Files& files_;
};

}  // namespace kestrel::walk
