#pragma once

#include <QLineEdit>

struct SizingState;

/// The entry box of all numeric inputs: lets only the characters of `ValidChars` and backspace be typed (others beep),
/// types the user's decimal separator for the keypad's decimal key, and selects its first ten characters when it is
/// entered.
class NumericBox : public QLineEdit
{
    Q_OBJECT

public:
    using QLineEdit::QLineEdit;

    /// The record that holds `ValidChars` and `DecSep`; it must outlive the box. Without it everything may be typed.
    void setFilter(const SizingState& state) { state_ = &state; }

    /// Gives the box the focus and selects its first ten characters, whether it had the focus or not.
    void enter();

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    void selectStart();

    /// The characters of a typed text that pass the key filter; beeps for each that does not.
    QString accepted(const QString& typed) const;

    const SizingState* state_ = nullptr;
    bool selectingByMouse_ = false; ///< from a press that has selected, by giving the focus or twice, to its release
};
