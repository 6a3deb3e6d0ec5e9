#pragma once

#include <QTransform>

class QPagedPaintDevice;
class SummaryForm;

/// Paints the summary as one page, black on white, on a device whose coordinates are those of the whole paper. Throws
/// when the device cannot be painted on.
void paintSummary(const SummaryForm& page, QPagedPaintDevice& device);

/// Where the summary stands on a page whose size and printable part are given in twips: in the middle, moved only as
/// far as the printable part needs it, and shrunk evenly only where that part is smaller than the summary.
QTransform placeSummary(const QSizeF& paper, const QRectF& printable);
