#include "platform/qt_message_box.h"

#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QPointer>

void QtMessageBox::show(const std::string& text)
{
    // Not on the stack: should the window that it stands over go, the box goes with it.
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Halvor-ORM Blanketing Valve Sizing"),
                        QString::fromStdString(text), QMessageBox::Ok, QApplication::activeWindow());
    box->setTextFormat(Qt::PlainText);
    // As wide as its title, which is cut otherwise, beside the window manager's buttons.
    constexpr int buttons = 130; // pixels
    if (auto* const rows = qobject_cast<QGridLayout*>(box->layout()))
        rows->addItem(new QSpacerItem(box->fontMetrics().horizontalAdvance(box->windowTitle()) + buttons, 0),
                      rows->rowCount(), 0, 1, rows->columnCount());
    box->exec();
    delete box;
}
