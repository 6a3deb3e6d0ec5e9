#include "app/list_box.h"

#include <QAccessible>
#include <QApplication>
#include <QFocusEvent>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>

namespace
{

// Pixels: two rows, their border and a pixel below, which a scale of 1.5 rounds away, fit the 450 twips of the pressure
// list. A third row takes the room between the captions above and below the list; a fourth one is scrolled to.
constexpr int rowHeight = 13;
constexpr int below = 1;
constexpr int roomAbove = 2;
constexpr int roomBelow = 10;

} // namespace

ListBox::ListBox(QWidget* parent) : QListWidget(parent)
{
    setUniformItemSizes(true);
    // Every choice has a value: a click beside the entries or with Ctrl selects none.
    connect(this, &QListWidget::itemSelectionChanged, this, [this] {
        if (selectedItems().isEmpty() && currentItem() != nullptr)
            currentItem()->setSelected(true);
    });
    setViewportMargins(0, 0, 0, below);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    showFocus(false);
}

void ListBox::fill(const QStringList& entries)
{
    // Filled without having the focus, it would tell screen readers of its entry as if it had (seen in Qt 6.4).
    const QSignalBlocker silent(hasFocus() ? nullptr : selectionModel());
    clear();
    addItems(entries);
    for (int row = 0; row < count(); ++row)
        item(row)->setSizeHint(QSize(0, rowHeight));
    if (stated_.isNull())
        stated_ = geometry();
    const int missing = std::max(count() * rowHeight + 2 * frameWidth() + below - stated_.height(), 0);
    setGeometry(stated_.adjusted(0, -std::clamp(missing - roomBelow, 0, roomAbove), 0, std::min(missing, roomBelow)));
    setCurrentRow(0);
}

void ListBox::focusInEvent(QFocusEvent* event)
{
    QListWidget::focusInEvent(event);
    showFocus(true);
    QTimer::singleShot(0, this, &ListBox::tellEntry); // after the toolkit has told of the list itself
}

void ListBox::focusOutEvent(QFocusEvent* event)
{
    QListWidget::focusOutEvent(event);
    showFocus(event->reason() == Qt::ActiveWindowFocusReason); // it has the focus again with the window
}

void ListBox::showFocus(bool hasIt)
{
    const QPalette usual = QApplication::palette();
    QPalette colours = palette();
    colours.setColor(QPalette::Highlight, hasIt ? usual.color(QPalette::Highlight) : QColor(144, 144, 144));
    colours.setColor(QPalette::HighlightedText, usual.color(hasIt ? QPalette::HighlightedText : QPalette::Text));
    setPalette(colours);
}

/// Has a screen reader say which entry is selected, not only how many there are.
void ListBox::tellEntry()
{
    if (!hasFocus() || currentRow() < 0)
        return;
    QAccessibleEvent entered(this, QAccessible::Focus);
    entered.setChild(currentRow());
    QAccessible::updateAccessibility(&entered);
}
