#include "gui/main_form_fixture.h"

namespace
{

/// A key that is held repeats by itself: printed pages and emptied forms would follow.
TEST_F(MainFormTest, AHeldKeyActsOnce)
{
    openDepad();
    sizeDepad();
    auto& button = get<QPushButton>("cmdPrint");
    button.setFocus();
    quint64 now = 1000; // milliseconds
    const auto prints = [&](Qt::Key key, quint64 later) {
        now += later;
        for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            event.setTimestamp(now);
            QApplication::sendEvent(&button, &event);
        }
        return std::exchange(printers.printed, std::nullopt).has_value();
    };
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Select}) {
        EXPECT_TRUE(prints(key, 100));
        EXPECT_FALSE(prints(key, 0)) << "the key is held while the program is busy";
        EXPECT_TRUE(prints(key, 100));
    }
    dynamic_cast<MainScreen&>(*screens.form()).setPrintEnabled(false);
    EXPECT_EQ(focus(), "cmdCalcFlowRate") << "Enter again must not clear the form";
}

/// So they come while a screen reader listens. A lost 0 would size a smaller valve.
TEST_F(MainFormTest, EqualKeysAreTypedWhenTheirPressesComeLate)
{
    openMain();
    auto& box = get<QLineEdit>("txtPumpRate");
    box.setFocus();
    quint64 now = 1000; // milliseconds
    for (const QEvent::Type type : {QEvent::ShortcutOverride, QEvent::KeyRelease, QEvent::ShortcutOverride,
                                    QEvent::KeyPress, QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_0, Qt::NoModifier, QStringLiteral("0"));
        event.setTimestamp(++now);
        QApplication::sendEvent(&box, &event);
    }
    EXPECT_EQ(box.text(), "00");
}

} // namespace
