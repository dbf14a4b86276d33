// The plot area: keeps its picture, repaints from it, and lays the cursor mark over it. Copying
// puts what it shows on the clipboard.
#pragma once

#include <QImage>
#include <QWidget>

#include "ui/painter_canvas.h"
#include "view/spectrum_view.h"

namespace kestrel {

class PictureBox : public QWidget {
    Q_OBJECT

  public:
    explicit PictureBox(QWidget* parent);

    // Drawing on it changes the picture, and with it the widget.
    Canvas& canvas() { return canvas_; }
    // The picture as it is now, without the cursor mark, in device dots.
    const QImage& picture();

    void placeCursorMark(const CursorMark& mark);

    // Whether the user has seen it yet: until then the window system is still sizing it.
    bool seen() const { return seen_; }

  signals:
    void keyDown(int keyCode, int shift);
    // x and y in the user scale.
    void mouseDown(int button, int shift, double x, double y);
    // Whole notches of the wheel, above 0 away from the user; x in the user scale.
    void wheelTurned(int notches, double x);
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
    void wheelEvent(QWheelEvent* event) override;

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
    QSize dots() const;
    QRect strip(const CursorMark& mark) const;

    QImage picture_;
    PictureCanvas canvas_;
    CursorMark mark_;
    bool seen_ = false;
    int wheelAngle_ = 0;  // turned since the last whole notch, in eighths of a degree
};

}  // namespace kestrel
