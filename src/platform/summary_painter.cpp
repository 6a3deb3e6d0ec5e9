#include "platform/summary_painter.h"

#include "report/summary_form.h"

#include <QFont>
#include <QImage>
#include <QPageLayout>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QTextLayout>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace
{

// Between two labels of a line, in twips: below a thin space they would read as one, and the second one moves on.
constexpr int thinSpace = 40;
constexpr int movedGap = 100;

/// In twips, which are the painter's unit: the size on paper is the same at every resolution.
QFont summaryFont(Type type)
{
    QFont font;
    font.setFamilies({QStringLiteral("Times New Roman"), QStringLiteral("Liberation Serif")});
    font.setStyleHint(QFont::Serif);
    font.setPixelSize(type == Type::heading ? 12 * 20 : type == Type::small ? 165 : 195); // 12, 8.25 and 9.75 pt
    font.setBold(type == Type::bold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

bool endsAtRight(Place place)
{
    return place == Place::boxedRight || place == Place::fittedRight;
}

/// The text of one label, broken into lines no wider than `width`; a single-line label has its first line only.
class LabelText
{
public:
    LabelText(const SummaryRow& row, const QString& text, double width) : layout_(text, summaryFont(row.type))
    {
        const bool wraps = row.place == Place::wrapped;
        QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
        option.setTextDirection(Qt::LeftToRight);
        option.setUseDesignMetrics(true);
        option.setWrapMode(wraps ? QTextOption::WrapAtWordBoundaryOrAnywhere : QTextOption::WrapAnywhere);
        layout_.setTextOption(option);
        layout_.beginLayout();
        double bottom = 0;
        for (QTextLine line = layout_.createLine(); line.isValid(); line = layout_.createLine()) {
            line.setLineWidth(width);
            line.setPosition(QPointF(0, bottom));
            bottom += line.height();
            // The first line may reach below its box by its descenders.
            if (lines_.empty() || (wraps && bottom <= row.height))
                lines_.push_back(line);
        }
        layout_.endLayout();
    }

    double width() const { return lines_.empty() ? 0 : lines_.front().naturalTextWidth(); }

    void draw(QPainter& painter, QPointF at) const
    {
        for (const QTextLine& line : lines_)
            line.draw(&painter, at);
    }

private:
    QTextLayout layout_;
    std::vector<QTextLine> lines_; ///< those that are shown
};

/// Paints one control and returns how far its line is taken then; `taken` is how far it was.
double paintControl(QPainter& painter, const SummaryRow& row, const QString& text, double taken)
{
    if (row.place == Place::picture) {
        painter.drawImage(QRectF(row.left, row.top, row.width, row.height), QImage(QStringLiteral(":/report/") + text));
        return taken;
    }
    if (endsAtRight(row.place)) {
        const double right = row.left + row.width;
        const LabelText label(row, text, right);
        label.draw(painter, QPointF(right - label.width(), row.top));
        return taken;
    }
    // A value that grows into the next label pushes it on; what finds no room is cut at the form's edge.
    const double left = row.left < taken + thinSpace ? taken + movedGap : row.left;
    const double room = row.place == Place::fitted ? summaryWidth - left : row.width;
    if (room <= 0)
        return taken;
    const LabelText label(row, text, room);
    label.draw(painter, QPointF(left, row.top));
    return left + label.width();
}

/// Paints the page with one twip as the painter's unit.
void paintPage(const SummaryForm& page, QPainter& painter)
{
    painter.setPen(Qt::black);
    double taken = 0; // right end of the label before it on the same line
    int line = 0;
    for (std::size_t at = 0; at < std::size(summaryRows); ++at) {
        const SummaryRow& row = summaryRows[at];
        if (row.top != line)
            taken = 0;
        line = row.top;
        const SummaryForm::Shown& shown = page.rows()[at];
        if (shown.visible && !shown.text.empty())
            taken = paintControl(painter, row, QString::fromStdString(shown.text), taken);
    }
}

} // namespace

QTransform placeSummary(const QSizeF& paper, const QRectF& printable)
{
    const double scale = std::min({1.0, printable.width() / summaryWidth, printable.height() / summaryHeight});
    const auto start = [scale](double available, double from, double to, int length) {
        return std::clamp((available - scale * length) / 2, from, std::max(from, to - scale * length));
    };
    return QTransform(scale, 0, 0, scale, start(paper.width(), printable.left(), printable.right(), summaryWidth),
                      start(paper.height(), printable.top(), printable.bottom(), summaryHeight));
}

void paintSummary(const SummaryForm& page, QPagedPaintDevice& device)
{
    QPainter painter;
    if (!painter.begin(&device))
        throw std::runtime_error("the paper cannot be painted on");
    const double dots = device.logicalDpiX() / 1440.0; // a twip
    const QSizeF paper(device.width() / dots, device.height() / dots);
    QPageLayout layout = device.pageLayout();
    layout.setUnits(QPageLayout::Point);
    const QMarginsF margins = layout.minimumMargins() * 20;
    painter.scale(dots, dots);
    painter.setTransform(placeSummary(paper, QRectF(QPointF(), paper).marginsRemoved(margins)), true);
    paintPage(page, painter);
    if (!painter.end())
        throw std::runtime_error("the page was not painted");
}
