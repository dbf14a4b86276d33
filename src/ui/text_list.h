// A list of lines in the fixed-pitch font; those chosen can be copied.
#pragma once

#include <QListWidget>
#include <QStringList>

namespace kestrel {

class TextList : public QListWidget {
    Q_OBJECT

  public:
    explicit TextList(QWidget* parent);

    // The selected lines; all where none is selected.
    QStringList chosenLines() const;

  private:
    enum class Lines { Selected, All };
    QStringList lines(Lines which) const;
};

}  // namespace kestrel
