#include "app/gas_box.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QWheelEvent>

#include <limits>

GasBox::GasBox(QWidget* parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);
    setFocusPolicy(Qt::StrongFocus);
    lineEdit()->setMaxLength(std::numeric_limits<int>::max());
    // Enter and leaving the box would pick the entry that the typed text names, by a connection of QComboBox's own
    // (seen in Qt 6.4).
    disconnect(lineEdit(), &QLineEdit::editingFinished, this, nullptr);
}

void GasBox::setGas(const QString& name)
{
    setCurrentIndex(findText(name));
    setEditText(name);
}

void GasBox::fill(const QStringList& names)
{
    const QSignalBlocker blocker(this);
    const QString text = currentText();
    addItems(names); // shows the first entry
    setGas(text);
}

void GasBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}
