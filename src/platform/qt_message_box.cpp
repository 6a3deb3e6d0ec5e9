#include "platform/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>

void QtMessageBox::show(const std::string& text)
{
    // Not on the stack: should the window that it stands over go, the box goes with it.
    const QPointer<QMessageBox> box =
        new QMessageBox(QMessageBox::NoIcon, QStringLiteral("Halvor-ORM Blanketing Valve Sizing"),
                        QString::fromStdString(text), QMessageBox::Ok, QApplication::activeWindow());
    box->setTextFormat(Qt::PlainText);
    box->exec();
    delete box;
}
