// What runs at a key press: repaint and cursor step; opening a file up to the painted plot; a
// printed page; and QCustomPlot painting the same counts.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QImage>
#include <QKeyEvent>
#include <QPainter>
#include <QPrinter>
#include <QTemporaryDir>
#include <QWheelEvent>
#include <qcustomplot.h>

#include "app/form2_main_window.h"
#include "app/module1.h"
#include "print/spectrum_printout.h"
#include "spectrum/open_spectrum.h"
#include "ui/kestrel_application.h"
#include "ui/painter_canvas.h"
#include "ui/print_job.h"
#include "ui/qt_dialogs.h"
#include "view/plot.h"

namespace {

using namespace kestrel;

// The file dialog answers at once.
class SampleDialogs : public QtDialogs {
  public:
    FileChoice openFile(const FileDialog&) override { return {.path = path, .filterIndex = 1}; }
    std::string path;
};

constexpr QSize pictureSize(1200, 800);

struct Program {
    explicit Program(std::int64_t channels) {
        dialogs.path = KESTREL_SAMPLES "/eu152-co60-cs137-" + std::to_string(channels) + ".chn";
        startModule1(*module, "/nonexistent");
        form2 = std::make_unique<Form2>(*module, dialogs);
        form2->plotArea->setFixedSize(pictureSize);
        form2->show();
        QApplication::processEvents();
        press(Qt::Key_G);
        show();
    }
    void press(Qt::Key key) const {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(form2->plotArea, &event);
    }
    // Paints what has to be painted, as the event loop does.
    void show() const { QApplication::processEvents(); }
    void choose(const char* item) const {
        form2->findChild<QAction*>(QLatin1String(item))->trigger();
    }
    // With the same counts behind it, of another calibration, and all axes.
    void compare() const {
        module->spectrum.calCurrent.b *= 1.01;
        choose("openSecond");
        choose("fineTicks");
        show();
    }

    SampleDialogs dialogs;
    std::unique_ptr<Module1> module = std::make_unique<Module1>();
    std::unique_ptr<Form2> form2;
};

// Switching the scale repaints everything, on the screen as well.
void repaintOnScreen(benchmark::State& state) {
    const Program program(state.range(0));
    for (auto _ : state) {
        program.press(Qt::Key_L);
        program.show();
    }
}
BENCHMARK(repaintOnScreen)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMicrosecond);

void repaintPairOnScreen(benchmark::State& state) {
    const Program program(16384);
    program.compare();
    for (auto _ : state) {
        program.press(Qt::Key_L);
        program.show();
    }
}
BENCHMARK(repaintPairOnScreen)->Unit(benchmark::kMicrosecond);

void repaintPicture(benchmark::State& state, PlotMode mode, CountAxis axis) {
    Program program(state.range(0));
    Module1& module = *program.module;
    module.view.plotMode = mode;
    module.view.linLogMode = axis;
    for (auto _ : state) {
        drawSpectrum(
            {module.spectrum, module.derived, module.view, module.channelColour, module.palette},
            program.form2->plotArea->canvas());
        benchmark::DoNotOptimize(program.form2->picture().constBits());
    }
}
BENCHMARK_CAPTURE(repaintPicture, lines, PlotMode::Line, CountAxis::Logarithmic)
    ->Arg(1024)
    ->Arg(4096)
    ->Arg(16384)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(repaintPicture, linear, PlotMode::Line, CountAxis::Linear)
    ->Arg(16384)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(repaintPicture, dots, PlotMode::Dots, CountAxis::Logarithmic)
    ->Arg(16384)
    ->Unit(benchmark::kMicrosecond);

// With a second curve behind the first, of another calibration.
void repaintPair(benchmark::State& state, PlotMode mode, CountAxis axis) {
    Program program(16384);
    Module1& module = *program.module;
    module.view.plotMode = mode;
    module.view.linLogMode = axis;
    const auto second = std::make_shared<OpenedSpectrum>();
    second->spectrum = module.spectrum;
    second->spectrum.calCurrent.b *= 1.01;
    Comparison comparison;
    comparison.second = second;
    updateComparison(comparison, module.spectrum);
    const PlotInput input{module.spectrum, module.derived, module.view, module.channelColour,
                          module.palette,  nullptr,        nullptr,     &comparison};
    for (auto _ : state) {
        drawSpectrum(input, program.form2->plotArea->canvas());
        benchmark::DoNotOptimize(program.form2->picture().constBits());
    }
}
BENCHMARK_CAPTURE(repaintPair, lines, PlotMode::Line, CountAxis::Logarithmic)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(repaintPair, linear, PlotMode::Line, CountAxis::Linear)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(repaintPair, dots, PlotMode::Dots, CountAxis::Logarithmic)
    ->Unit(benchmark::kMicrosecond);

void cursorStep(benchmark::State& state) {
    const Program program(state.range(0));
    program.module->view.cursorCh = 500;
    bool right = true;
    for (auto _ : state) {
        program.press(right ? Qt::Key_Right : Qt::Key_Left);
        program.show();
        right = !right;
    }
}
BENCHMARK(cursorStep)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMicrosecond);

// A notch of the wheel at the pointer, and of one with Shift, which needs a part of the channels;
// beside a second spectrum, or in the difference of the two.
enum class Shown { One, Pair, Difference };

void show(const Program& program, Shown shown) {
    if (shown != Shown::One)
        program.compare();
    if (shown == Shown::Difference)
        program.choose("difference");
}

void wheelStep(benchmark::State& state, Shown shown, Qt::KeyboardModifiers held) {
    const Program program(16384);
    show(program, shown);
    PictureBox& plot = *program.form2->plotArea;
    const auto turn = [&](int angle, Qt::KeyboardModifiers keys) {
        QWheelEvent event({500, 300}, plot.mapToGlobal(QPointF(500, 300)), {}, {0, angle},
                          Qt::NoButton, keys, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&plot, &event);
        program.show();
    };
    if (held == Qt::ShiftModifier)
        turn(120, Qt::NoModifier);
    int angle = 120;
    for (auto _ : state) {
        turn(angle, held);
        angle = -angle;
    }
}
BENCHMARK_CAPTURE(wheelStep, zoom, Shown::One, Qt::NoModifier)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wheelStep, pan, Shown::One, Qt::ShiftModifier)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wheelStep, zoomPair, Shown::Pair, Qt::NoModifier)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wheelStep, panPair, Shown::Pair, Qt::ShiftModifier)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(wheelStep, zoomDifference, Shown::Difference, Qt::NoModifier)
    ->Unit(benchmark::kMicrosecond);

// The band that follows the pointer while a range is drawn.
void dragStep(benchmark::State& state, Shown shown) {
    const Program program(16384);
    show(program, shown);
    PictureBox& plot = *program.form2->plotArea;
    const auto send = [&plot](QEvent::Type type, double x) {
        QMouseEvent event(type, {x, 300}, plot.mapToGlobal(QPointF(x, 300)), Qt::LeftButton,
                          Qt::LeftButton, {});
        QApplication::sendEvent(&plot, &event);
    };
    send(QEvent::MouseButtonPress, 200);
    double x = 300;
    for (auto _ : state) {
        send(QEvent::MouseMove, x);
        program.show();
        x = x < 1100 ? x + 1 : 300;
    }
}
BENCHMARK_CAPTURE(dragStep, one, Shown::One)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(dragStep, pair, Shown::Pair)->Unit(benchmark::kMicrosecond);

void openToPaintedPlot(benchmark::State& state) {
    const Program program(state.range(0));
    for (auto _ : state) {
        program.press(Qt::Key_G);
        program.show();
    }
}
BENCHMARK(openToPaintedPlot)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMicrosecond);

// A sheet of the whole spectrum as a PDF file.
void printPage(benchmark::State& state) {
    Program program(state.range(0));
    const Module1& module = *program.module;
    const PrintoutInput input{module.spectrum, module.derived, module.view};
    const QTemporaryDir folder;
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(folder.filePath(QStringLiteral("page.pdf")));
    printer.setPageSize(QPageSize(QPageSize::A4));
    for (auto _ : state) {
        const auto job = beginPrintJob(printer, "page");
        const double headerEnd = printPageHeader(input.spectrum, job->canvas(), job->layout());
        drawPrintedSpectrum(input, headerEnd, job->canvas(), program.dialogs);
        drawEnergyAxis(input, job->canvas());
        job->endDocument();
    }
    state.counters["bytes"] = static_cast<double>(QFileInfo(printer.outputFileName()).size());
}
BENCHMARK(printPage)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMillisecond);

// The same counts as a step line on a logarithmic axis.
void repaintQCustomPlot(benchmark::State& state) {
    const Program program(state.range(0));
    const Spectrum& spectrum = program.module->spectrum;
    QVector<double> channels;
    QVector<double> counts;
    for (int k = 0; k < spectrum.channelCount; ++k) {
        channels.append(k);
        counts.append(std::max(spectrum.counts[k], 1) * 1.0);
    }
    QCustomPlot plot;
    plot.setAttribute(Qt::WA_DontShowOnScreen);
    plot.resize(pictureSize);
    plot.addGraph();
    plot.graph(0)->setLineStyle(QCPGraph::lsStepLeft);
    plot.setNotAntialiasedElements(QCP::aeAll);
    plot.graph(0)->setData(channels, counts, true);
    plot.yAxis->setScaleType(QCPAxis::stLogarithmic);
    plot.rescaleAxes();
    plot.show();
    for (auto _ : state)
        plot.replot(QCustomPlot::rpImmediateRefresh);
}
BENCHMARK(repaintQCustomPlot)->Arg(1024)->Arg(4096)->Arg(16384)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    kestrel::KestrelApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
