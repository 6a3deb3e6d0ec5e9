#pragma once

#include <QString>
#include <QWidget>

class QFileDialog;
class QMenuBar;

/// The window of a form: its menu bar, and below it the form, whose size is the client area. On a screen too small for
/// both and a title bar the form scrolls, so that every control can be reached.
class FormWindow : public QWidget
{
    Q_OBJECT

public:
    /// Becomes the parent of both.
    FormWindow(QWidget& form, QMenuBar& bar);
};

/// A menu bar that never has the focus: the Alt key alone does nothing, as in a window without menus, and after Escape
/// the next key goes to the form again. Its menus open by the mouse and by their access keys. It has no parent yet.
QMenuBar* createMenuBar();

/// Has the user name a file in `dialog` before `window`; "" when he does not. The dialog stays for the next time. It
/// suggests no names while he types: their list would outlive it and take the next key.
QString askIn(QFileDialog& dialog, QWidget* window);
