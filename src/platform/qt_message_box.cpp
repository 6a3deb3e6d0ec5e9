#include "platform/qt_message_box.h"

#include <QApplication>
#include <QMessageBox>

void QtMessageBox::show(const std::string& text)
{
    QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Halvor-ORM Blanketing Valve Sizing"),
                    QString::fromStdString(text), QMessageBox::Ok, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.exec();
}
