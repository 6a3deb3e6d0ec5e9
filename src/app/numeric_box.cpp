#include "app/numeric_box.h"

#include "app/key_filter.h"
#include "app/sizing_state.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>

#include <utility>

namespace
{

/// Whether a key is a character, of any layout, with Ctrl: it types a control character. Ctrl and Alt together are
/// AltGr.
bool isControlCharacter(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers held = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    return held == Qt::ControlModifier && event.key() < Qt::Key_Escape; // from there on keys are no characters
}

/// What a key types. Keys that type nothing (arrows, Home, Delete, Shift+Insert) give an empty text.
QString typedText(const QKeyEvent& event, const SizingState* state)
{
    const int key = event.key();
    if (key == Qt::Key_Delete)
        return {};
    if (key == Qt::Key_Backspace)
        return QChar(u'\b');
    if (isControlCharacter(event)) // Ctrl+H is backspace; of the others none passes
        return key == Qt::Key_H ? QChar(u'\b') : QChar(u'\x1');
    const bool keypad = event.modifiers().testFlag(Qt::KeypadModifier);
    if (state != nullptr && !state->DecSep.empty() && keypad && (key == Qt::Key_Period || key == Qt::Key_Comma))
        return QString::fromStdString(state->DecSep);
    return event.text();
}

} // namespace

QString NumericBox::accepted(const QString& typed) const
{
    if (state_ == nullptr)
        return typed;
    QString passed;
    for (const QChar c : typed)
        if (modValidate(static_cast<std::int16_t>(c.unicode()), state_->ValidChars, &QApplication::beep) != 0)
            passed += c;
    return passed;
}

bool NumericBox::event(QEvent* event)
{
    // Ctrl and a character are typed here, and beep: the form's shortcuts pass this box by.
    if (event->type() == QEvent::ShortcutOverride && isControlCharacter(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

/// The usual menu, but without the keys, which only beep here. The toolkit's own asks for what could be pasted when it
/// opens, and waits many seconds for a program that does not answer.
void NumericBox::contextMenuEvent(QContextMenuEvent* event)
{
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const char* text, auto act, bool isEnabled) {
        menu->addAction(QString::fromLatin1(text), this, act)->setEnabled(isEnabled);
    };
    add("&Undo", &QLineEdit::undo, isUndoAvailable());
    add("&Redo", &QLineEdit::redo, isRedoAvailable());
    menu->addSeparator();
    add("Cu&t", &QLineEdit::cut, hasSelectedText());
    add("&Copy", &QLineEdit::copy, hasSelectedText());
    add("&Paste", &QLineEdit::paste, true);
    add("Delete", &QLineEdit::del, hasSelectedText());
    menu->addSeparator();
    add("Select All", &QLineEdit::selectAll, selectedText() != text());
    menu->popup(event->globalPos());
}

void NumericBox::keyPressEvent(QKeyEvent* event)
{
    const QString typed = typedText(*event, state_);
    const QString passed = accepted(typed);
    if (passed.isEmpty() && !typed.isEmpty()) {
        event->accept(); // rejected: the keystroke ends here
        return;
    }
    const bool isControlH = isControlCharacter(*event); // the only one that passes
    QKeyEvent filtered(event->type(), isControlH ? int(Qt::Key_Backspace) : event->key(),
                       isControlH ? Qt::NoModifier : event->modifiers(), passed, event->isAutoRepeat(),
                       static_cast<quint16>(event->count()));
    QLineEdit::keyPressEvent(&filtered);
    event->setAccepted(filtered.isAccepted());
}

void NumericBox::inputMethodEvent(QInputMethodEvent* event)
{
    if (const QString text = event->commitString(); !text.isEmpty())
        event->setCommitString(accepted(text), event->replacementStart(), event->replacementLength());
    QLineEdit::inputMethodEvent(event);
}

void NumericBox::focusInEvent(QFocusEvent* event)
{
    QLineEdit::focusInEvent(event);
    selectingByMouse_ = event->reason() == Qt::MouseFocusReason; // a context menu may have taken the last release
    // Coming back from another window or from the context menu is not entering: the user may be half-way through.
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason)
        return;
    selectStart();
}

void NumericBox::enter()
{
    setFocus();
    selectStart(); // focusInEvent does it only when the focus was elsewhere
}

void NumericBox::selectStart()
{
    setSelection(0, 10);
}

// The click that enters the box selects, even when the hand moves; only the next one places the cursor. A double click
// selects the number, not what stands on one side of its separator.

void NumericBox::mousePressEvent(QMouseEvent* event)
{
    if (!selectingByMouse_)
        QLineEdit::mousePressEvent(event);
}

void NumericBox::mouseDoubleClickEvent(QMouseEvent* event)
{
    QLineEdit::mouseDoubleClickEvent(event); // waits for a third click, too
    if (event->button() != Qt::LeftButton)
        return;
    selectAll();
    QMouseEvent release(QEvent::MouseButtonRelease, event->position(), event->globalPosition(), Qt::LeftButton,
                        Qt::NoButton, event->modifiers());
    QLineEdit::mouseReleaseEvent(&release); // what is selected can be pasted with the middle button
    selectingByMouse_ = true;
}

void NumericBox::mouseMoveEvent(QMouseEvent* event)
{
    if (!selectingByMouse_)
        QLineEdit::mouseMoveEvent(event);
}

void NumericBox::mouseReleaseEvent(QMouseEvent* event)
{
    if (!std::exchange(selectingByMouse_, false))
        QLineEdit::mouseReleaseEvent(event);
}
