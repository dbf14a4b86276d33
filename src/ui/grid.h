// A table of texts on coloured cells, worked by keyboard and mouse; selected rows can be copied.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <QAbstractTableModel>
#include <QTableView>

#include "base/palette.h"

namespace kestrel {

struct GridCell {
    std::string text;
    int colour = palette_number::white;  // of the background, by its number in the palette
};
using GridRow = std::vector<GridCell>;

class GridModel : public QAbstractTableModel {
    Q_OBJECT

  public:
    GridModel(const Palette& palette, QObject* parent)
        : QAbstractTableModel(parent), palette_(palette) {}

    struct Column {
        QString heading;
        Qt::Alignment alignment;
    };
    void setColumns(std::vector<Column> columns);
    void setRows(std::vector<GridRow> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    const Palette& palette_;
    std::vector<Column> columns_;
    std::vector<GridRow> rows_;
};

// Rows and columns are counted from 1; row 0 is the heading, column 0 the narrow fixed column.
class Grid : public QTableView {
    Q_OBJECT

  public:
    // The palette must outlive the grid.
    Grid(const Palette& palette, QWidget* parent);

    // Headings separated by "|", each begun by ">" (right-aligned) or "<" (left-aligned); the first
    // is the fixed column. Columns are as wide as their headings until the user widens them.
    void setFormat(std::string_view format);
    // A row that has fewer cells than there are columns is empty from there on.
    void setRows(std::vector<GridRow> rows);

    void goTo(int row, int column, int firstVisibleRow);
    int currentRow() const { return currentIndex().row() + 1; }
    QString text(int row, int column) const;

    // The selected rows as lines of tab-separated fields.
    QString selectedText() const;

  signals:
    // A click, a double click, or Enter.
    void rowPicked(int row);
    // A letter or function key that the grid has no use for itself, as its virtual-key number.
    void keyDown(int keyCode);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    GridModel* const model_;
    std::string format_;
};

}  // namespace kestrel
