#include "GridView.h"

#include "CellAlignment.h"
#include "ScreenWidget.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPointer>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QTimer>

namespace qx::desk {

// Edits a cell with the usual line editor, but lets the screen see its keys first: a
// function key or Enter typed in a cell acts on the screen, with the text typed so far.
class GridEditing : public QStyledItemDelegate {
public:
    GridEditing(ScreenWidget& screen, QObject* parent) : QStyledItemDelegate(parent), screen_(screen) {
        connect(this, &QAbstractItemDelegate::closeEditor, this, [this] { editor_ = nullptr; });
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        editor_ = editor;
        return editor;
    }

    // Hands the open editor's text to the table, and so to the model. The editor stays open:
    // it closes when the model moves the cursor on, and when the model refuses the move the
    // user goes on correcting what he typed.
    void Commit() {
        if (editor_) emit commitData(editor_);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            // Esc in a cell gives up the edit, as in any table; the next Esc is the screen's.
            if (key.key() != Qt::Key_Escape && screen_.HandleKey(key)) return true;
        }
        return QStyledItemDelegate::eventFilter(object, event);
    }

private:
    ScreenWidget& screen_;
    mutable QPointer<QWidget> editor_;
};

namespace {

// The host's colour values are 0x00BBGGRR: 255 is red.
QColor FromColourValue(int value) {
    return QColor(value & 0xFF, (value >> 8) & 0xFF, (value >> 16) & 0xFF);
}

// Asks for the room its columns need, so that a screen opens wide enough for its grid.
class GridTable : public QTableWidget {
public:
    using QTableWidget::QTableWidget;
    QSize sizeHint() const override {
        int width = 2 * frameWidth() + verticalScrollBar()->sizeHint().width();
        for (int col = 0; col < columnCount(); ++col)
            if (!isColumnHidden(col)) width += columnWidth(col);
        const int height = 2 * frameWidth() + horizontalHeader()->sizeHint().height() +
                           12 * verticalHeader()->defaultSectionSize();
        return {std::min(width, 1400), height};
    }

    // The cursor's highlight shows in the grid that has the keyboard only: a screen of three
    // grids shows the one place where typing goes.
    void ShowCursor(bool shown) {
        const QPalette standard = QApplication::palette(this);
        QPalette colours = palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            colours.setColor(group, QPalette::Highlight,
                             standard.color(group, shown ? QPalette::Highlight : QPalette::Base));
            colours.setColor(group, QPalette::HighlightedText,
                             standard.color(group, shown ? QPalette::HighlightedText : QPalette::Text));
        }
        setPalette(colours);
    }

protected:
    void focusInEvent(QFocusEvent* event) override {
        ShowCursor(true);
        QTableWidget::focusInEvent(event);
    }
    void focusOutEvent(QFocusEvent* event) override {
        ShowCursor(false);
        QTableWidget::focusOutEvent(event);
    }
};

// A column is never narrower than its caption, shown bold where the cursor's column is.
int CaptionWidth(const QTableWidget& table, const QString& caption) {
    QFont font = table.horizontalHeader()->font();
    font.setBold(true);
    const int margin = table.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, table.horizontalHeader());
    return QFontMetrics(font).horizontalAdvance(caption) + 4 * margin;
}

} // namespace

GridView::GridView(ui::Grid& grid, ScreenWidget& screen, QWidget* parent)
    : ControlView(grid, screen), grid_(grid), table_(new GridTable(parent)),
      editing_(new GridEditing(screen, table_)) {
    table_->setObjectName(ToQString(grid.Name()));
    static_cast<GridTable*>(table_)->ShowCursor(false);
    table_->setItemDelegate(editing_);
    table_->verticalHeader()->hide();
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    if (grid.SelectsRows) table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::DoubleClicked |
                            QAbstractItemView::EditKeyPressed);
    // Tab goes to the model, which moves on as Enter does; Shift+Tab leaves the grid.
    table_->setTabKeyNavigation(false);
    screen.WatchKeys(table_);
    QObject::connect(table_, &QTableWidget::itemChanged, table_,
                     [this](QTableWidgetItem* item) { CellCommitted(*item); });
    QObject::connect(table_, &QTableWidget::currentCellChanged, table_,
                     [this](int row, int col) { CurrentCellMoved(row, col); });
    QObject::connect(table_, &QTableWidget::cellDoubleClicked, table_, [this](int row, int col) {
        Screen().Act([&] { grid_.DoubleClick(row + 1, col); });
    });
}

GridView::~GridView() = default;

QWidget* GridView::Widget() const { return table_; }

void GridView::CommitTyping() { editing_->Commit(); }

void GridView::RefreshContent() {
    const QSignalBlocker quiet(table_);
    const int cols = grid_.Cols();
    table_->setColumnCount(cols);
    table_->setRowCount(grid_.Rows() - 1);
    QStringList captions;
    for (int col = 0; col < cols; ++col) captions << ToQString(grid_.Column(col).caption);
    table_->setHorizontalHeaderLabels(captions);
    for (int col = 0; col < cols; ++col) {
        const ui::GridColumn& column = grid_.Column(col);
        table_->horizontalHeaderItem(col)->setTextAlignment(print::CellAlignment(column.align, {}) |
                                                            Qt::AlignVCenter);
        table_->setColumnHidden(col, column.width <= 0);
        if (column.width > 0)
            table_->setColumnWidth(col, std::max(TwipsToPixels(column.width, *table_), CaptionWidth(*table_, captions[col])));
    }
    table_->clearSpans();

    const QBrush fixedBackground = table_->palette().button();
    for (int row = 1; row < grid_.Rows(); ++row) {
        const std::string& marks = grid_.RowMarks(row);
        const bool strong = HasMark(marks, "headingfonts") || HasMark(marks, "totals");
        const int colour = grid_.RowColour(row);
        for (int col = 0; col < cols; ++col) {
            const ui::GridColumn& column = grid_.Column(col);
            const bool typing = grid_.Editing() && row == grid_.Row() && col == grid_.Col();
            // A proposal shows, paler, where nothing is typed: what Enter takes.
            const std::string proposal = typing ? std::string() : grid_.Proposal(row, col);
            const QString text = ToQString(typing              ? *grid_.Editing()
                                           : proposal.empty() ? grid_.TextMatrix(row, col)
                                                              : proposal);
            QTableWidgetItem* item = table_->item(row - 1, col);
            if (!item) {
                item = new QTableWidgetItem;
                table_->setItem(row - 1, col, item);
            }
            item->setText(text);
            item->setTextAlignment(print::CellAlignment(column.align, text) | Qt::AlignVCenter);
            Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
            if (grid_.Editable && column.editable && col >= grid_.FixedCols)
                flags |= Qt::ItemIsEditable;
            item->setFlags(flags);
            QFont font = table_->font();
            font.setBold(strong);
            item->setFont(font);
            if (colour != 0) {
                const QColor background = FromColourValue(colour);
                item->setBackground(background);
                item->setForeground(background.lightness() < 128 ? Qt::white : Qt::black);
            } else {
                item->setBackground(col < grid_.FixedCols ? fixedBackground : QBrush());
                item->setForeground(proposal.empty() ? QBrush() : table_->palette().placeholderText());
            }
        }
    }
    SpanHeadings();
    ShowModelCursor();
}

// A heading row's text runs on over the empty cells after it, as the printed report shows it.
void GridView::SpanHeadings() {
    for (int row = 1; row < grid_.Rows(); ++row) {
        if (!HasMark(grid_.RowMarks(row), "headingfonts")) continue;
        for (int col = 0; col < grid_.Cols(); ++col) {
            if (grid_.TextMatrix(row, col).empty() || table_->isColumnHidden(col)) continue;
            int end = col + 1;
            while (end < grid_.Cols() && grid_.TextMatrix(row, end).empty()) ++end;
            if (end - col > 1) table_->setSpan(row - 1, col, 1, end - col);
            col = end - 1;
        }
    }
}

void GridView::ShowModelCursor() {
    const QSignalBlocker quiet(table_);
    const bool inGrid = grid_.Row() >= 1 && grid_.Row() < grid_.Rows() && grid_.Col() < grid_.Cols();
    if (!inGrid) {
        table_->setCurrentItem(nullptr);
        return;
    }
    if (table_->currentRow() != grid_.Row() - 1 || table_->currentColumn() != grid_.Col())
        table_->setCurrentCell(grid_.Row() - 1, grid_.Col());
}

void GridView::CellCommitted(QTableWidgetItem& item) {
    const int row = item.row() + 1;
    const int col = item.column();
    const std::string text = item.text().toStdString();
    Screen().Act([&] {
        if ((row != grid_.Row() || col != grid_.Col()) && !grid_.MoveTo(row, col)) return;
        grid_.Type(text);
    });
    // A cell the model does not let the user type into shows its own text again.
    RefreshContent();
}

void GridView::CurrentCellMoved(int row, int col) {
    if (row < 0 || col < 0) return;
    if (row + 1 == grid_.Row() && col == grid_.Col()) return;
    bool moved = false;
    Screen().Act([&] { moved = grid_.MoveTo(row + 1, col); });
    if (moved) return;
    ShowModelCursor();
    ReopenEditor();
}

// After a refused move the user is back in the cell with what he typed, to correct it.
void GridView::ReopenEditor() {
    QTimer::singleShot(0, table_, [this] {
        QTableWidgetItem* item = table_->currentItem();
        if (item && (item->flags() & Qt::ItemIsEditable)) table_->editItem(item);
    });
}

} // namespace qx::desk
