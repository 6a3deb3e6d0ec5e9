#include "app/box_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QFontMetrics>
#include <QLineEdit>
#include <QTextBoundaryFinder>

#include <tuple>
#include <utility>

namespace
{

/// A line edit to screen readers: its text, cursor and selection, editable.
class BoxAccessible : public QAccessibleWidget, public QAccessibleTextInterface, public QAccessibleEditableTextInterface
{
public:
    explicit BoxAccessible(QLineEdit* box) : QAccessibleWidget(box, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Help) // its description is its unit
            return box().toolTip();
        return kind == QAccessible::Value ? box().text() : QAccessibleWidget::text(kind);
    }
    void setText(QAccessible::Text kind, const QString& text) override
    {
        if (kind == QAccessible::Value)
            box().setText(text);
        else
            QAccessibleWidget::setText(kind, text);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = !box().isReadOnly();
        state.readOnly = box().isReadOnly();
        state.selectableText = true;
        return state;
    }

    // The text.

    QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* start, int* end) const override
    {
        const int length = characterCount();
        const int at = offset == -1 ? length : offset == -2 ? cursorPosition() : offset;
        std::tie(*start, *end) = std::pair(0, length);
        if (boundary == QAccessible::CharBoundary)
            std::tie(*start, *end) = at >= 0 && at < length ? std::pair(at, at + 1) : std::pair(-1, -1);
        else if (boundary == QAccessible::WordBoundary || boundary == QAccessible::SentenceBoundary)
            std::tie(*start, *end) = itemAt(at, boundary == QAccessible::WordBoundary ? QTextBoundaryFinder::Word
                                                                                      : QTextBoundaryFinder::Sentence);
        return *start < 0 ? QString() : text(*start, *end);
    }
    QString text(int start, int end) const override { return box().text().mid(start, end - start); }
    int characterCount() const override { return static_cast<int>(box().text().size()); }
    int cursorPosition() const override { return box().cursorPosition(); }
    void setCursorPosition(int position) override { box().setCursorPosition(position); }
    void selection(int index, int* start, int* end) const override
    {
        const bool selected = index == 0 && box().hasSelectedText();
        *start = selected ? box().selectionStart() : 0;
        *end = selected ? box().selectionEnd() : 0;
    }
    int selectionCount() const override { return box().hasSelectedText() ? 1 : 0; }
    void addSelection(int start, int end) override { setSelection(0, start, end); }
    void removeSelection(int) override { box().deselect(); }
    void setSelection(int, int start, int end) override { box().setSelection(start, end - start); }
    QString attributes(int, int* start, int* end) const override
    {
        *start = *end = 0;
        return {};
    }
    void scrollToSubstring(int start, int) override { setCursorPosition(start); }
    QRect characterRect(int offset) const override
    {
        if (offset < 0 || offset >= characterCount())
            return {};
        const QFontMetrics metrics = box().fontMetrics();
        const int left = metrics.horizontalAdvance(box().text().left(offset)) -
                         metrics.horizontalAdvance(box().text().left(cursorPosition()));
        const QRect cursor = box().inputMethodQuery(Qt::ImCursorRectangle).toRect();
        const QPoint at = box().mapToGlobal(QPoint(cursor.center().x() + left, cursor.top()));
        return {at, QSize(metrics.horizontalAdvance(box().text().at(offset)), cursor.height())};
    }
    int offsetAtPoint(const QPoint& point) const override { return box().cursorPositionAt(box().mapFromGlobal(point)); }

    // Editing.

    void deleteText(int start, int end) override { replaceText(start, end, {}); }
    void insertText(int offset, const QString& inserted) override { replaceText(offset, offset, inserted); }
    void replaceText(int start, int end, const QString& replacement) override
    {
        if (!box().isReadOnly())
            box().setText(box().text().replace(start, end - start, replacement));
    }

private:
    /// The word or sentence around a place, or what lies between two of them; nothing behind the last character.
    std::pair<int, int> itemAt(int at, QTextBoundaryFinder::BoundaryType type) const
    {
        QTextBoundaryFinder finder(type, box().text());
        int start = 0;
        for (int next = 0; next >= 0; next = static_cast<int>(finder.toNextBoundary())) {
            if (next > at)
                return {start, next};
            start = next;
        }
        return {characterCount(), characterCount()};
    }

    QLineEdit& box() const { return *static_cast<QLineEdit*>(widget()); }
};

/// A form, or its window. As a plain widget it would be a filler.
class FormAccessible : public QAccessibleWidget
{
public:
    explicit FormAccessible(QWidget* form) : QAccessibleWidget(form) {}
    QAccessible::Role role() const override { return widget()->isWindow() ? QAccessible::Window : QAccessible::Pane; }
};

QAccessibleInterface* create(const QString& className, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    if (widget == nullptr)
        return nullptr;
    if (className == QLatin1String("SetupForm") || className == QLatin1String("MainForm") ||
        className == QLatin1String("FormWindow"))
        return new FormAccessible(widget);
    if (className == QLatin1String("Announcer"))
        return new QAccessibleWidget(widget, QAccessible::Notification);
    auto* const box = qobject_cast<QLineEdit*>(object);
    const bool speaks = box != nullptr && box->echoMode() == QLineEdit::Normal; // a password is left to the toolkit
    return speaks && className == QLatin1String("QLineEdit") ? new BoxAccessible(box) : nullptr;
}

} // namespace

void installBoxAccessibility()
{
    QAccessible::installFactory(create);
}
