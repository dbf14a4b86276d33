// Form8, the print preview: the sheet as the printer will make it, to be printed or left.
#pragma once

#include <QImage>
#include <QMenuBar>

#include "print/spectrum_printout.h"
#include "spectrum/notice.h"
#include "ui/modal_form.h"
#include "ui/notice_line.h"
#include "ui/painter_canvas.h"

namespace kestrel {

class Form8 : public ModalForm {
    Q_OBJECT

    QMenuBar* const menu_;  // before the items that it has

  public:
    // What `input` refers to, `dialogs` and `placement` must outlive the window.
    Form8(const PrintoutInput& input, const Notice& notice, Dialogs& dialogs,
          WindowPlacement& placement, QWidget* parent);

    QAction* const printAction;
    QAction* const cancelAction;

    // The sheet without its margins, as the window shows it.
    const QImage& sheet() const { return sheet_; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void print();
    void drawPreview();
    bool drawSheet(const PageLayout& layout, Canvas& canvas);
    QRectF paperRect() const;

    NoticeLine* const noticeLine_;
    PrintoutInput input_;
    Dialogs& dialogs_;
    PageLayout layout_;
    QImage sheet_;
    QImage shown_;  // the sheet in the size that the window has room for
    PainterCanvas canvas_;
};

}  // namespace kestrel
