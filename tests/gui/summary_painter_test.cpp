#include "platform/summary_painter.h"

#include <gtest/gtest.h>

// The page itself is read from real print jobs in end_to_end/print_check.py.
TEST(PlaceSummary, CentresMovesAndShrinksAsThePrintablePartNeeds)
{
    using Row = std::tuple<QSizeF, QMarginsF, double, double, double>;
    for (const auto& [paper, margins, left, top, scale] :
         {Row{{11900, 16840}, {0, 0, 0, 0}, 677.5, 1085, 1},             // A4
          Row{{12240, 15840}, {240, 240, 240, 800}, 847.5, 370, 1},      // a deep foot: up, not smaller
          Row{{12240, 15840}, {240, 837, 240, 1800}, 1374.75, 837, 0.9}, // 13203 = 0.9 of the height
          Row{{8400, 11900}, {0, 0, 0, 0}, 0, 107, 8400.0 / 10545}}) {   // A5: the width decides
        const QTransform placed = placeSummary(paper, QRectF(QPointF(), paper).marginsRemoved(margins));
        EXPECT_NEAR(placed.m11(), scale, 1e-9);
        EXPECT_EQ(placed.m11(), placed.m22());
        EXPECT_NEAR(placed.dx(), left, 0.5);
        EXPECT_NEAR(placed.dy(), top, 0.5);
    }
}
