#include "app/frame.h"

#include <QPainter>

void Frame::paintEvent(QPaintEvent*)
{
    constexpr int captionLeft = 8; // pixels
    constexpr int captionGap = 3;
    const QFontMetrics metrics = fontMetrics();
    const QRect caption(captionLeft, 0, metrics.horizontalAdvance(title()), metrics.height());
    const QRect border = rect().adjusted(0, metrics.height() / 2, -1, -1);

    QPainter painter(this);
    painter.setClipRegion(QRegion(rect()) - caption.adjusted(-captionGap, 0, captionGap, 0));
    painter.setPen(palette().color(QPalette::Window).darker(200));
    painter.drawRect(border);
    painter.setClipping(false);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, title());
}
