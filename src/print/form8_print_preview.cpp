#include "print/form8_print_preview.h"

#include <memory>

#include <QKeyEvent>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "spectrum/file_name.h"
#include "ui/fonts.h"
#include "ui/print_job.h"

namespace kestrel {
namespace {

constexpr double previewDotsPerPoint = 3;  // more than most screens have for a whole sheet
constexpr int margin = 12;                 // of the window around the sheet, in pixels

QAction* menuItem(QMenuBar* menu, const char* name, const char* caption) {
    QAction* action = menu->addAction(QString::fromLatin1(caption));
    action->setObjectName(QString::fromLatin1(name));
    return action;
}

}  // namespace

Form8::Form8(const PrintoutInput& input, const Notice& notice, Dialogs& dialogs,
             WindowPlacement& placement, QWidget* parent)
    : ModalForm("Form8", "Print Image", placement, parent),
      menu_(new QMenuBar(this)),
      printAction(menuItem(menu_, "prn1", "&Print")),
      cancelAction(menuItem(menu_, "can1", "&Cancel")),
      noticeLine_(new NoticeLine(NoticeLine::Kind::TextOnly, this)),
      input_(input),
      dialogs_(dialogs),
      layout_(dialogs.pageLayout()),
      canvas_(printFont()) {
    auto* column = new QVBoxLayout(this);
    column->setMenuBar(menu_);
    column->addWidget(noticeLine_);
    column->addStretch();
    noticeLine_->say(notice.text());
    connect(printAction, &QAction::triggered, this, &Form8::print);
    connect(cancelAction, &QAction::triggered, this, &Form8::reject);
    resize(screen()->availableSize() * 0.85);
    restorePlacement();
    drawPreview();
}

void Form8::print() {
    const std::unique_ptr<PrintJob> job = dialogs_.print(baseName(input_.spectrum));
    if (job == nullptr)
        return;
    // A fault on the way gives the document up.
    const bool drawn = drawSheet(job->layout(), job->canvas());
    // The preview shows the paper that was chosen.
    if (job->layout() != layout_) {
        layout_ = job->layout();
        drawPreview();
    }
    if (drawn)
        job->endDocument();
}

bool Form8::drawSheet(const PageLayout& layout, Canvas& canvas) {
    const double headerEnd = printPageHeader(input_.spectrum, canvas, layout);
    if (!drawPrintedSpectrum(input_, headerEnd, canvas, dialogs_))
        return false;
    drawEnergyAxis(input_, canvas);
    return true;
}

void Form8::drawPreview() {
    const QSize dots =
        (QSizeF(layout_.width, layout_.height) * previewDotsPerPoint).toSize().expandedTo({1, 1});
    canvas_.attach(nullptr, dots, 1);  // the old sheet goes
    sheet_ = QImage(dots, QImage::Format_Grayscale8);
    sheet_.fill(Qt::white);
    canvas_.attach(&sheet_, dots, previewDotsPerPoint * pointsPerUnit);
    drawSheet(layout_, canvas_);
    canvas_.finish();
    shown_ = QImage();
    update();
}

// As large as the window has room for it, in the middle.
QRectF Form8::paperRect() const {
    const int top =
        noticeLine_->isVisible() ? noticeLine_->geometry().bottom() + 1 : menu_->height();
    const QRectF room =
        contentsRect().adjusted(0, top, 0, 0).adjusted(margin, margin, -margin, -margin);
    const QSizeF size =
        QSizeF(layout_.paperWidth, layout_.paperHeight).scaled(room.size(), Qt::KeepAspectRatio);
    QRectF paper(QPointF(), size);
    paper.moveCenter(room.center());
    return paper;
}

void Form8::paintEvent(QPaintEvent*) {
    const QRectF paper = paperRect();
    const double pixels = paper.width() / layout_.paperWidth;  // a point
    const double ratio = devicePixelRatioF();
    const QSize dots = (QSizeF(layout_.width, layout_.height) * pixels * ratio).toSize();
    const QPointF corner = (paper.topLeft() + QPointF(layout_.left, layout_.top) * pixels) * ratio;
    // Made smaller as a whole and then shown dot by dot: a painter would drop thin lines.
    if (shown_.size() != dots) {
        shown_ = sheet_.scaled(dots, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        shown_.setDevicePixelRatio(ratio);
    }
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Mid));
    painter.fillRect(paper, Qt::white);
    painter.drawImage(QPointF(corner.toPoint()) / ratio, shown_);
}

// Enter prints; Escape closes, as in every window.
void Form8::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        printAction->trigger();
    else
        ModalForm::keyPressEvent(event);
}

}  // namespace kestrel
