// A line above the content of a window that tells what its user must know; hidden when there is
// nothing to say.
#pragma once

#include <string>

#include <QFrame>

class QLabel;
class QPushButton;

namespace kestrel {

class NoticeLine : public QFrame {
    Q_OBJECT

  public:
    // Without buttons it only shows.
    enum class Kind { WithButtons, TextOnly };
    NoticeLine(Kind kind, QWidget* parent);

    // Hides the line when the text is empty. A text that was not there before is told to screen
    // readers. `canRestore` shows "Restore".
    void say(const std::string& text, bool canRestore = false);

  signals:
    void restoreAsked();
    void closeAsked();

  private:
    QPushButton* button(const char* name, const char* caption, const char* tip);

    QLabel* text_;
    QPushButton* restore_ = nullptr;
};

}  // namespace kestrel
