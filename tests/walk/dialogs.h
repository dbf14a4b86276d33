// Dialogs of a walk: answered at random, and at times shown as they are, for the walk to press
// their keys and buttons.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QApplication>
#include <QPrinter>

#include "base/runtime_fault.h"
#include "ui/print_job.h"
#include "ui/qt_dialogs.h"
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
    std::optional<std::size_t> choose(const ChoiceBox& box) override {
        return random_.oneIn(3) ? std::nullopt : std::optional(box.chosen);
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
    // Of paper for an office and of labels too narrow for any text.
    PageLayout pageLayout() override {
        choosePaper();
        return toPageLayout(printer_.pageLayout());
    }
    std::unique_ptr<PrintJob> print(const std::string& documentName) override {
        wrote = true;
        if (random_.oneIn(4))
            return nullptr;
        if (random_.oneIn(4))
            throw RuntimeFault(Fault::Printer);
        choosePaper();
        printer_.setOutputFileName(QString::fromStdString(files_.output().path));
        printer_.setOutputFormat(QPrinter::PdfFormat);
        return beginPrintJob(printer_, documentName);
    }

    // At the start of a step.
    void forget() {
        messages.clear();
        opened.clear();
        wrote = false;
        modalsAllowed = true;
    }

    // What the step has brought.
    std::vector<std::string> messages;
    std::string opened;
    int inputs = 0;
    bool wrote = false;

    bool modalsAllowed = true;

  private:
    bool showsRealOnes() { return modalsAllowed && random_.oneIn(4); }

    void choosePaper() {
        static constexpr QPageSize::PageSizeId papers[] = {QPageSize::A4, QPageSize::Letter,
                                                           QPageSize::A8, QPageSize::A0};
        printer_.setPageSize(QPageSize(random_.pick(papers)));
        printer_.setPageOrientation(random_.oneIn(2) ? QPageLayout::Portrait
                                                     : QPageLayout::Landscape);
    }

    Random& random_;
    Files& files_;
    QPrinter printer_{QPrinter::HighResolution};
};

}  // namespace kestrel::walk
