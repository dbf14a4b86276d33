#include "ui/grid.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <tuple>
#include <utility>

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

#include "base/text.h"
#include "ui/colours.h"
#include "ui/copying.h"
#include "ui/fonts.h"
#include "ui/text_codec.h"
#include "ui/virtual_keys.h"

namespace kestrel {
namespace {

constexpr int fixedColumnWidth = 14;  // pixels
constexpr int cellMargin = 12;
constexpr int markWidth = 5;
constexpr int markRole = Qt::UserRole;

// A coloured cell keeps its colour in a selected row; the plain cells show the selection.
class ColouredCells : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        if (index.data(markRole).toBool())
            painter->fillRect(QRect(option.rect.topLeft(), QSize(markWidth, option.rect.height())),
                              Qt::darkGreen);
    }

  protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (option->backgroundBrush.color() != QColor(Qt::white))
            option->state &= ~QStyle::State_Selected;
    }
};

// Numbers before texts; letter case does not count.
using SortKey = std::tuple<bool, double, std::string>;

SortKey sortKey(const GridCell& cell) {
    if (cell.value)
        return {false, *cell.value, {}};
    const std::string_view text = trimBlanks(cell.text);
    double number = 0;
    const auto end = std::from_chars(text.data(), text.data() + text.size(), number);
    if (end.ec == std::errc() && std::isfinite(number))
        return {false, number, {}};
    return {true, 0, toLower(text)};
}

QString asField(const QString& text) {
    return QString::fromStdString(tableField(text.toStdString()));
}

std::vector<GridModel::Column> columnsOf(std::string_view format) {
    std::vector<GridModel::Column> columns;
    while (true) {
        const std::size_t bar = format.find('|');
        const std::string_view field = format.substr(0, bar);
        columns.push_back(
            {toWindow(field.substr(1)),
             (field.starts_with('>') ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter});
        if (bar == std::string_view::npos)
            return columns;
        format.remove_prefix(bar + 1);
    }
}

}  // namespace

void GridModel::setColumns(std::vector<Column> columns) {
    beginResetModel();
    columns_ = std::move(columns);
    endResetModel();
}

void GridModel::setToolTip(int column, const QString& text) {
    columns_.at(static_cast<std::size_t>(column)).toolTip = text;
}

void GridModel::setRows(std::vector<GridRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    arrange();
    endResetModel();
}

void GridModel::arrange() {
    order_.resize(rows_.size());
    std::iota(order_.begin(), order_.end(), 0);
    if (sortColumn_ < 0)
        return;
    const auto column = static_cast<std::size_t>(sortColumn_);
    std::vector<SortKey> keys;
    keys.reserve(rows_.size());
    for (const GridRow& row : rows_)
        keys.push_back(column < row.size() ? sortKey(row[column]) : SortKey());
    std::ranges::stable_sort(order_, [&](int a, int b) {
        if (sortOrder_ == Qt::DescendingOrder)
            std::swap(a, b);
        return keys[static_cast<std::size_t>(a)] < keys[static_cast<std::size_t>(b)];
    });
}

void GridModel::sort(int column, Qt::SortOrder order) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<int> given;
    for (const QModelIndex& index : before)
        given.push_back(givenRow(index.row()));
    sortColumn_ = column;
    sortOrder_ = order;
    arrange();
    for (int i = 0; i < before.size(); ++i)
        changePersistentIndex(
            before[i], index(shownRow(given[static_cast<std::size_t>(i)]), before[i].column()));
    emit layoutChanged();
}

int GridModel::givenRow(int shown) const {
    return shown < 0 ? shown : order_.at(static_cast<std::size_t>(shown));
}

int GridModel::shownRow(int given) const {
    return static_cast<int>(std::ranges::find(order_, given) - order_.begin());
}

int GridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int GridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

// The cells keep their light backgrounds and black texts whatever the desktop's theme is.
QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const GridRow& row = rows_[static_cast<std::size_t>(givenRow(index.row()))];
    const auto column = static_cast<std::size_t>(index.column());
    const bool filled = column < row.size();
    switch (role) {
        case Qt::DisplayRole:
            return filled ? toSigns(row[column].text) : QString();
        case Qt::TextAlignmentRole:
            return QVariant(columns_[column].alignment);
        case Qt::BackgroundRole:
            return toQColor(palette_.at(
                static_cast<std::size_t>(filled ? row[column].colour : palette_number::white)));
        case Qt::ForegroundRole:
            return QColor(Qt::black);
        case markRole:
            return filled && row[column].marked;
        default:
            return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical)
        return role == Qt::DisplayRole ? QVariant(QString()) : QVariant();
    const Column& column = columns_.at(static_cast<std::size_t>(section));
    if (role == Qt::DisplayRole)
        return column.heading.trimmed();
    if (role == Qt::ToolTipRole && !column.toolTip.isEmpty())
        return column.toolTip;
    return role == Qt::TextAlignmentRole ? QVariant(column.alignment) : QVariant();
}

Grid::Grid(const Palette& palette, QWidget* parent)
    : QTableView(parent), model_(new GridModel(palette, this)), sortMenu_(new QMenu(this)) {
    setModel(model_);
    setItemDelegate(new ColouredCells(this));
    setFont(fixedPitchFont(11));
    horizontalHeader()->setFont(font());
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    verticalHeader()->setFixedWidth(fixedColumnWidth);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setVerticalScrollMode(ScrollPerItem);
    setTabKeyNavigation(false);
    setWordWrap(false);
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    horizontalHeader()->setSortIndicatorClearable(true);
    setSortingEnabled(true);
    makeMenu();
    const auto pick = [this](const QModelIndex& index) {
        emit rowPicked(model_->givenRow(index.row()) + 1);
    };
    connect(this, &QTableView::clicked, this, pick);
    connect(this, &QTableView::doubleClicked, this, pick);
}

void Grid::makeMenu() {
    offerCopying(
        *this, [this] { return selectedText(); }, [this] { return allText(); });
    sortMenu_->setTitle(QStringLiteral("&Sort by"));
    addAction(sortMenu_->menuAction());
}

// The menu sorts by keyboard, where headings cannot be clicked.
void Grid::listColumns() {
    sortMenu_->clear();
    const auto offer = [this](const QString& caption, int column) {
        sortMenu_->addAction(caption, this, [this, column] {
            horizontalHeader()->setSortIndicator(column, Qt::AscendingOrder);
        });
    };
    for (int column = 0; column < model_->columnCount(); ++column)
        offer(model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(), column);
    offer(QStringLiteral("&Not at all"), -1);
}

void Grid::setFormat(std::string_view format) {
    if (format == format_)
        return;
    format_ = format;
    std::vector<GridModel::Column> columns = columnsOf(format);
    columns.erase(columns.begin());
    std::vector<int> widths;
    widths.reserve(columns.size());
    for (const GridModel::Column& column : columns)
        widths.push_back(fontMetrics().horizontalAdvance(column.heading) + cellMargin);
    model_->setColumns(std::move(columns));
    listColumns();
    for (std::size_t i = 0; i < widths.size(); ++i)
        setColumnWidth(static_cast<int>(i), widths[i]);
}

void Grid::setToolTips(const std::vector<std::string_view>& texts) {
    for (std::size_t i = 0; i < texts.size(); ++i)
        model_->setToolTip(static_cast<int>(i), toWindow(texts[i]));
}

void Grid::setRows(std::vector<GridRow> rows) {
    model_->setRows(std::move(rows));
}

void Grid::goTo(int row, int column, int firstVisibleRow) {
    const QModelIndex current = model_->index(model_->shownRow(row - 1), column - 1);
    if (!current.isValid())
        return;
    setCurrentIndex(current);
    if (horizontalHeader()->sortIndicatorSection() < 0)
        scrollTo(model_->index(firstVisibleRow - 1, column - 1), PositionAtTop);
}

int Grid::currentRow() const {
    return model_->givenRow(currentIndex().row()) + 1;
}

QString Grid::text(int row, int column) const {
    return model_->index(model_->shownRow(row - 1), column - 1).data().toString();
}

QString Grid::selectedText() const {
    QModelIndexList rows = selectionModel()->selectedRows();
    std::ranges::sort(rows, {}, &QModelIndex::row);
    return linesOf(rows);
}

QString Grid::allText() const {
    QModelIndexList rows;
    for (int row = 0; row < model_->rowCount(); ++row)
        rows += model_->index(row, 0);
    return linesOf(rows);
}

QString Grid::linesOf(const QModelIndexList& rows) const {
    QString lines;
    for (const QModelIndex& row : rows) {
        QStringList fields;
        for (int column = 0; column < model_->columnCount(); ++column)
            fields += asField(row.siblingAtColumn(column).data().toString());
        lines += fields.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    return lines;
}

void Grid::keyPressEvent(QKeyEvent* event) {
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentRow() > 0) {
        emit rowPicked(currentRow());
        return;
    }
    // Letters would search the first column, which holds numbers.
    const bool plain = (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    const bool letter = event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z;
    const bool function = event->key() >= Qt::Key_F1 && event->key() <= Qt::Key_F12;
    if (plain && (letter || function))
        emit keyDown(virtualKey(*event).code);
    else
        QTableView::keyPressEvent(event);
}

}  // namespace kestrel
