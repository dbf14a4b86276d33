// Form10, the data information window: the header of the loaded spectrum as lines of text.
#pragma once

#include <string>
#include <vector>

#include <QWidget>

#include "base/window_placement.h"
#include "ui/text_list.h"

namespace kestrel {

class Form10 : public QWidget {
    Q_OBJECT

  public:
    // Both must outlive the window.
    Form10(const std::vector<std::string>& headerLines, WindowPlacement& placement,
           QWidget* parent);

    // Lists the header lines as they are now.
    void refresh();

    TextList* const header;

  protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    const std::vector<std::string>& headerLines_;
    WindowPlacement& placement_;
};

}  // namespace kestrel
