// A table of texts on coloured cells, worked by keyboard and mouse; rows can be sorted and copied.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <QAbstractTableModel>
#include <QMenu>
#include <QTableView>

#include "base/palette.h"

namespace kestrel {

struct GridCell {
    std::string text;
    int colour = palette_number::white;  // of the background, by its number in the palette
    std::optional<double> value = {};    // it is sorted by; none: the number or text that it shows
    bool marked = false;                 // with a bar at its left edge
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
        QString toolTip = {};
    };
    void setColumns(std::vector<Column> columns);
    void setToolTip(int column, const QString& text);
    void setRows(std::vector<GridRow> rows);

    // Rows as they were given and as they are shown, both counted from 0.
    int givenRow(int shown) const;
    int shownRow(int given) const;

    // By the column; as they were given for -1. New rows are sorted likewise.
    void sort(int column, Qt::SortOrder order) override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    void arrange();

    const Palette& palette_;
    std::vector<Column> columns_;
    std::vector<GridRow> rows_;
    std::vector<int> order_;  // the given rows in the order in which they are shown
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};

// Rows and columns are counted from 1; row 0 is the heading, column 0 the narrow fixed column. Rows
// go by the order in which they were given, also where they are sorted: a click on a heading sorts
// upwards, a second one downwards, a third one not.
class Grid : public QTableView {
    Q_OBJECT

  public:
    // The palette must outlive the grid.
    Grid(const Palette& palette, QWidget* parent);

    // Headings separated by "|", each begun by ">" (right-aligned) or "<" (left-aligned); the first
    // is the fixed column. Columns are as wide as their headings until the user widens them.
    void setFormat(std::string_view format);
    // Of the headings, from the first on.
    void setToolTips(const std::vector<std::string_view>& texts);
    // A row that has fewer cells than there are columns is empty from there on.
    void setRows(std::vector<GridRow> rows);

    void goTo(int row, int column, int firstVisibleRow);
    int currentRow() const;
    QString text(int row, int column) const;

    // The selected rows, in the order in which they are shown, as lines of tab-separated fields.
    QString selectedText() const;
    QString allText() const;

  signals:
    // A click, a double click, or Enter.
    void rowPicked(int row);
    // A letter or function key that the grid has no use for itself, as its virtual-key number.
    void keyDown(int keyCode);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void makeMenu();
    void listColumns();
    QString linesOf(const QModelIndexList& rows) const;

    GridModel* const model_;
    QMenu* const sortMenu_;
    std::string format_;
};

}  // namespace kestrel
