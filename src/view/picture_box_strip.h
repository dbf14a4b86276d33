// A strip beside the plot area that is drawn as a whole, by a function of the core, whenever it is
// shown anew.
#pragma once

#include <functional>

#include <QWidget>

#include "ui/painter_canvas.h"

namespace kestrel {

class PictureStrip : public QWidget {
    Q_OBJECT

  public:
    using Drawing = std::function<void(Canvas& canvas)>;

    // As high as a line of the plot's text and the ticks above it.
    PictureStrip(QWidget* parent, Drawing drawing);

    void setTextPoints(double points);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    Drawing drawing_;
    PainterCanvas canvas_;
};

}  // namespace kestrel
