#include "ui/print_job.h"

#include <QBuffer>
#include <QFile>
#include <QPdfWriter>
#include <QPrinterInfo>

#include "base/deferred_canvas.h"
#include "base/file_replacement.h"
#include "base/runtime_fault.h"
#include "ui/fonts.h"
#include "ui/painter_canvas.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

constexpr double fontPoints = 9;
constexpr double linePoints = 0.5;
// Dots an inch. Finer than the eye, and even a sheet of A0 has fewer dots than a canvas can tell.
constexpr int highestResolution = 600;

// Gives a canvas the measures of a device's pages; it draws once it is attached to the device.
void attachTo(QPaintDevice* device, const QPagedPaintDevice& pages, int resolution,
              PainterCanvas& canvas) {
    const QSize dots = pages.pageLayout().paintRectPixels(resolution).size();
    const int lineDots = qMax(1, qRound(linePoints / 72.0 * resolution));
    canvas.attach(device, dots, resolution / 96.0, lineDots);
    if (device != nullptr && !canvas.begin())
        throw RuntimeFault(Fault::Printer);
}

// The canvas of a device that has pages.
class PageCanvas : public PainterCanvas {
  public:
    // The device must outlive it.
    explicit PageCanvas(QPagedPaintDevice& device) : PainterCanvas(printFont()), device_(device) {}

    void newPage() override {
        flush();
        if (!device_.newPage())
            throw RuntimeFault(Fault::Printer);
    }

  private:
    QPagedPaintDevice& device_;
};

// The printer gets a document only when it is whole: what has been sent to it is printed, whatever
// happens then.
class PrinterJob : public PrintJob {
  public:
    explicit PrinterJob(QPrinter& printer)
        : printer_(printer), canvas_(printer), document_(canvas_) {
        requirePrinter();
        printer_.setResolution(qMin(printer_.resolution(), highestResolution));
        attachTo(nullptr, printer_, printer_.resolution(), canvas_);
    }
    Canvas& canvas() override { return document_; }
    PageLayout layout() const override { return toPageLayout(printer_.pageLayout()); }
    void endDocument() override {
        requirePrinter();
        attachTo(&printer_, printer_, printer_.resolution(), canvas_);
        document_.replay(canvas_);
        canvas_.finish();
    }

  private:
    // Qt tells nothing of a printer that is gone.
    void requirePrinter() const {
        if (QPrinterInfo::printerInfo(printer_.printerName()).isNull())
            throw RuntimeFault(Fault::Printer);
    }

    QPrinter& printer_;
    PageCanvas canvas_;
    DeferredCanvas document_;
};

// The pages are kept in memory until the document ends; then they replace the file.
class PdfJob : public PrintJob {
  public:
    PdfJob(QString path, const QPageLayout& layout, const QString& title)
        : path_(std::move(path)), writer_(&pages_), canvas_(writer_) {
        pages_.open(QIODevice::WriteOnly);
        writer_.setPageLayout(layout);
        writer_.setResolution(highestResolution);
        writer_.setTitle(title);
        writer_.setCreator(QString::fromLatin1(applicationTitle));
        attachTo(&writer_, writer_, highestResolution, canvas_);
    }
    Canvas& canvas() override { return canvas_; }
    PageLayout layout() const override { return toPageLayout(writer_.pageLayout()); }
    void endDocument() override {
        canvas_.finish();
        const QByteArray& bytes = pages_.data();
        replaceFile(QFile::encodeName(path_).toStdString(),
                    {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }

  private:
    QString path_;
    QBuffer pages_;
    QPdfWriter writer_;
    PageCanvas canvas_;
};

}  // namespace

QFont printFont() {
    return fixedPitchFont(fontPoints);
}

PageLayout toPageLayout(const QPageLayout& layout) {
    const QRectF paper = layout.fullRect(QPageLayout::Point);
    const QRectF inside = layout.paintRect(QPageLayout::Point);
    return {paper.width(), paper.height(), inside.left(),
            inside.top(),  inside.width(), inside.height()};
}

std::unique_ptr<PrintJob> beginPrintJob(QPrinter& printer, const std::string& documentName) {
    const QString title = toSigns(documentName);
    if (printer.outputFormat() == QPrinter::PdfFormat)
        return std::make_unique<PdfJob>(printer.outputFileName(), printer.pageLayout(), title);
    printer.setDocName(title);
    return std::make_unique<PrinterJob>(printer);
}

}  // namespace kestrel
