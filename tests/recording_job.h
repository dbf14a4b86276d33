// A print job that keeps its pages.
#pragma once

#include <utility>
#include <vector>

#include "base/dialogs.h"
#include "recording_canvas.h"

namespace kestrel::test {

struct Printed {
    std::vector<std::vector<Text>> pages;
    bool ended = false;
};

// What is printed goes to `printed`, which must outlive the job.
class RecordingJob : public PrintJob {
  public:
    explicit RecordingJob(Printed& printed) : canvas_(printed), printed_(printed) {
        canvas_.lineHeight = 0.75;
    }
    Canvas& canvas() override { return canvas_; }
    PageLayout layout() const override { return a4Page; }
    void endDocument() override {
        canvas_.newPage();
        printed_.ended = true;
    }

  private:
    class PageCanvas : public RecordingCanvas {
      public:
        explicit PageCanvas(Printed& printed) : printed_(printed) {}
        void newPage() override { printed_.pages.push_back(std::exchange(texts, {})); }

      private:
        Printed& printed_;
    };

    PageCanvas canvas_;
    Printed& printed_;
};

}  // namespace kestrel::test
