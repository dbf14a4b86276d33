// The plot area: keeps its picture, repaints from it, and lays cursor mark and texts over it.
// Copying puts what it shows on the clipboard.
#pragma once

#include <optional>
#include <vector>

#include <QImage>
#include <QWidget>

#include "ui/painter_canvas.h"
#include "view/mark_labels.h"
#include "view/spectrum_view.h"

namespace kestrel {

// The size of a widget, at least one, in the dots of its screen.
QSize dotsOf(const QWidget& widget);
// How wide lines are drawn on a screen with so many dots in a pixel.
int lineDotsAt(double ratio);

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    explicit PictureBox(QWidget* parent);

    // Drawing on it changes the picture, and with it the widget.
    Canvas& canvas() { return canvas_; }
    // The picture as it is now, without what lies over it, in device dots.
    const QImage& picture();

    void placeCursorMark(const CursorMark& mark);
    void placeTexts(std::vector<PlacedText> texts);
    // The picture is empty afterwards and must be drawn again.
    void setLook(const PlotLook& look);

    // Whether the user has seen it yet: until then the window system is still sizing it.
    bool seen() const { return seen_; }

  signals:
    void keyDown(int keyCode, int shift);
    // x and y in the user scale.
    void mouseDown(int button, int shift, double x, double y);
    // Whole notches of the wheel, above 0 away from the user; x in the user scale.
    void wheelTurned(int notches, int shift, double x);
    // The left button was pressed at one place in the user scale and is moved, or let go, at
    // another; `shift` is that of the press.
    void dragging(int shift, double from, double to);
    void dragged(int shift, double from, double to);
    // In the user scale.
    void pointerMoved(double x);
    void pointerLeft();
    // The picture has another size and is empty: it must be drawn again.
    void resized();
    // Only its dots are others: it must be drawn again as it was.
    void rescaled();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    // A canvas whose every new drawing asks the widget to show it.
    class PictureCanvas : public PainterCanvas {
      public:
        explicit PictureCanvas(QWidget& owner);
        void clear(Colour background) override;

      private:
        QWidget& owner_;
    };

    void makePicture();
    void followScreen();
    void paintTexts(QPainter& painter) const;
    QRect strip(const CursorMark& mark) const;
    // What the left button has been drawn over, in dots; empty for a mere click.
    QRect band() const;
    double userX(const QPointF& position) const;
    void endDrag();

    QImage picture_;
    PictureCanvas canvas_;
    CursorMark mark_;
    std::vector<PlacedText> texts_;
    Palette palette_ = standardPalette;
    bool seen_ = false;
    // Between press and release of the left button, in the user scale.
    struct Drag {
        double from = 0;
        double to = 0;
        int startX = 0;  // in the widget
        int shift = 0;
        bool begun = false;
    };
    std::optional<Drag> drag_;
    int wheelAngle_ = 0;  // turned since the last whole notch, in eighths of a degree
};

}  // namespace kestrel
