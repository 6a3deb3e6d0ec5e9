#include "app/frame.h"

#include <QPainter>

void Frame::paintEvent(QPaintEvent*)
{
    constexpr int captionLeft = 8; // pixels
    constexpr int captionGap = 3;
    const QFontMetrics metrics = fontMetrics();
    const QRect caption(captionLeft, 0, metrics.horizontalAdvance(title()), metrics.height());
    const QRect outside = rect().adjusted(0, metrics.height() / 2, 0, 0);
    const QRegion border = QRegion(outside) - outside.adjusted(1, 1, -1, -1);

    // Filled, for at a scale of 2 a line along the edge would lose half of its width.
    QPainter painter(this);
    for (const QRect& part : border - caption.adjusted(-captionGap, 0, captionGap, 0))
        painter.fillRect(part, palette().color(QPalette::Window).darker(200));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(caption, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, title());
}
