#include "app/menu_bell.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMenu>

#include <algorithm>

bool MenuBell::eventFilter(QObject* watched, QEvent* event)
{
    const auto* const menu = qobject_cast<QMenu*>(watched);
    if (menu == nullptr || event->type() != QEvent::KeyPress)
        return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const bool isCharacter = !key.text().isEmpty() && key.text().front().isPrint() && key.key() != Qt::Key_Space;
    const QList<QAction*> entries = menu->actions();
    const bool isTaken = std::ranges::any_of(entries, [&](const QAction* entry) {
        const QKeySequence accessKey = QKeySequence::mnemonic(entry->text());
        return entry->isEnabled() && !accessKey.isEmpty() && accessKey[0].key() == key.key();
    });
    if (!isCharacter || isTaken)
        return false;
    QApplication::beep();
    return true;
}
