#include "view/picture_box_file.h"

#include <algorithm>

#include <QBuffer>
#include <QImage>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "base/file_replacement.h"
#include "base/runtime_fault.h"
#include "ui/fonts.h"
#include "ui/painter_canvas.h"
#include "ui/text_codec.h"

namespace kestrel {
namespace {

// Dots in a canvas unit of the kinds of file that have no dots of their own: lines are three
// quarters of a unit wide and stand at quarters.
constexpr int fineness = 4;
constexpr int fineLine = 3;
constexpr int unitsInInch = 96;
// The texts of a large picture grow with it, from the size of an ordinary window on.
constexpr double ordinaryWidth = 1100;
constexpr double ordinaryHeight = 700;

void drawParts(QPaintDevice& device, QSize dots, double ratio, int lineDots,
               const PictureParts& parts) {
    PainterCanvas canvas(fixedPitchFont(parts.textPoints));
    canvas.attach(&device, dots, ratio, lineDots);
    if (!canvas.begin())
        throw RuntimeFault(Fault::DeviceError);
    const int below = parts.strip ? qRound(parts.stripHeight * ratio) : 0;
    canvas.goOnIn({0, 0, dots.width(), dots.height() - below});
    parts.plot(canvas);
    if (parts.strip) {
        canvas.goOnIn({0, dots.height() - below, dots.width(), below});
        parts.strip(canvas);
    }
    canvas.finish();
}

void writePng(QBuffer& file, PictureSize size, const PictureParts& parts) {
    QImage image(size.width, size.height, QImage::Format_RGB32);
    if (image.isNull())
        throw RuntimeFault(Fault::OutOfMemory);
    const double ratio =
        std::max(1.0, std::min(size.width / ordinaryWidth, size.height / ordinaryHeight));
    drawParts(image, image.size(), ratio, static_cast<int>(ratio), parts);
    if (!image.save(&file, "PNG"))
        throw RuntimeFault(Fault::OutOfMemory);
}

void writeSvg(QBuffer& file, PictureSize size, const PictureParts& parts, const QString& title) {
    const QSize dots(size.width * fineness, size.height * fineness);
    QSvgGenerator drawing;
    drawing.setOutputDevice(&file);
    drawing.setResolution(unitsInInch * fineness);
    drawing.setSize(dots);
    drawing.setViewBox(QRect(QPoint(0, 0), dots));
    drawing.setTitle(title);
    drawParts(drawing, dots, fineness, fineLine, parts);
}

void writePdf(QBuffer& file, PictureSize size, const PictureParts& parts, const QString& title) {
    QPdfWriter document(&file);
    const QSizeF inches(double(size.width) / unitsInInch, double(size.height) / unitsInInch);
    document.setPageSize(QPageSize(inches, QPageSize::Inch, {}, QPageSize::ExactMatch));
    document.setPageMargins({});
    document.setResolution(unitsInInch * fineness);
    document.setTitle(title);
    document.setCreator(QString::fromLatin1(applicationTitle));
    drawParts(document, QSize(size.width, size.height) * fineness, fineness, fineLine, parts);
}

}  // namespace

void savePicture(const PictureFile& file, const PictureParts& parts, const std::string& title) {
    QBuffer contents;
    contents.open(QIODevice::WriteOnly);
    if (file.kind == PictureKind::Png)
        writePng(contents, file.size, parts);
    else if (file.kind == PictureKind::Svg)
        writeSvg(contents, file.size, parts, toSigns(title));
    else
        writePdf(contents, file.size, parts, toSigns(title));
    const QByteArray& bytes = contents.data();
    replaceFile(file.path, {bytes.constData(), static_cast<std::size_t>(bytes.size())});
}

}  // namespace kestrel
