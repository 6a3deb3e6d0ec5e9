#include "app/bubble.h"

#include <QApplication>
#include <QEvent>
#include <QToolTip>
#include <QWidget>

namespace
{

/// Closes the bubble at the next key, and goes with it. The toolkit itself closes a tooltip at a click and when the
/// focus moves, but not at a key.
class CloserByKey : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress) {
            QToolTip::hideText();
            deleteLater();
        }
        return false;
    }
};

} // namespace

void showBubble(QWidget& control, const QString& text)
{
    QToolTip::showText(control.mapToGlobal(control.rect().bottomLeft()), text, &control);
    qApp->installEventFilter(new CloserByKey(&control));
}
