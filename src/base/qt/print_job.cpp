#include "base/qt/print_job.h"

#include <cmath>

#include <QBuffer>
#include <QFile>
#include <QPdfWriter>

#include "base/file_replacement.h"
#include "base/qt/fonts.h"
#include "base/qt/painter_canvas.h"
#include "base/qt/text_codec.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr double fontPoints = 9;
constexpr double linePoints = 0.5;

// Attaches a canvas to the pages of a device.
void attachTo(QPagedPaintDevice& device, int resolution, PainterCanvas& canvas) {
    const QSize dots = device.pageLayout().paintRectPixels(resolution).size();
    const int lineDots = qMax(1, qRound(linePoints / 72.0 * resolution));
    canvas.attach(&device, dots, resolution / 96.0, lineDots);
    if (!canvas.begin())
        throw RuntimeFault(Fault::Printer);
}

class PrinterJob : public PrintJob {
  public:
    explicit PrinterJob(QPrinter& printer) : printer_(printer), canvas_(printFont()) {
        attachTo(printer_, printer_.resolution(), canvas_);
    }
    ~PrinterJob() override {
        if (!ended_)
            printer_.abort();
    }
    Canvas& canvas() override { return canvas_; }
    PageLayout layout() const override { return toPageLayout(printer_.pageLayout()); }
    void newPage() override {
        canvas_.flush();
        if (!printer_.newPage())
            throw RuntimeFault(Fault::Printer);
    }
    void endDocument() override {
        ended_ = true;
        canvas_.finish();
        if (printer_.printerState() == QPrinter::Error)
            throw RuntimeFault(Fault::Printer);
    }

  private:
    QPrinter& printer_;
    PainterCanvas canvas_;
    bool ended_ = false;
};

// The pages are kept in memory until the document ends; then they replace the file.
class PdfJob : public PrintJob {
  public:
    PdfJob(QString path, const QPageLayout& layout, const QString& title)
        : path_(std::move(path)), writer_(&pages_), canvas_(printFont()) {
        pages_.open(QIODevice::WriteOnly);
        writer_.setPageLayout(layout);
        writer_.setResolution(pdfResolution);
        writer_.setTitle(title);
        writer_.setCreator(QString::fromLatin1(applicationTitle));
        attachTo(writer_, pdfResolution, canvas_);
    }
    Canvas& canvas() override { return canvas_; }
    PageLayout layout() const override { return toPageLayout(writer_.pageLayout()); }
    void newPage() override {
        canvas_.flush();
        if (!writer_.newPage())
            throw RuntimeFault(Fault::Printer);
    }
    void endDocument() override {
        canvas_.finish();
        const QByteArray& bytes = pages_.data();
        replaceFile(QFile::encodeName(path_).toStdString(),
                    {bytes.constData(), static_cast<std::size_t>(bytes.size())});
    }

  private:
    static constexpr int pdfResolution = 600;

    QString path_;
    QBuffer pages_;
    QPdfWriter writer_;
    PainterCanvas canvas_;
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
    const QString title = toWindow(documentName);
    if (printer.outputFormat() == QPrinter::PdfFormat)
        return std::make_unique<PdfJob>(printer.outputFileName(), printer.pageLayout(), title);
    printer.setDocName(title);
    return std::make_unique<PrinterJob>(printer);
}

}  // namespace kestrel
