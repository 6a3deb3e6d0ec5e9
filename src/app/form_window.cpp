#include "app/form_window.h"

#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QProxyStyle>
#include <QScreen>
#include <QScrollArea>
#include <QVBoxLayout>

namespace
{

constexpr int titleBar = 40; // pixels: the highest of the usual desktops

/// Turns off what would give the bar the focus.
class StillStyle : public QProxyStyle
{
public:
    StillStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override
    {
        return hint == SH_MenuBar_AltKeyNavigation ? 0 : QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace

FormWindow::FormWindow(QWidget& form, QMenuBar& bar)
{
    QWidget* const focus = form.focusWidget();
    setWindowTitle(form.windowTitle());
    constexpr int quarters = 4; // scales are multiples of 1/4: so the form begins at a whole pixel of the screen
    bar.setMinimumHeight((bar.sizeHint().height() + quarters - 1) / quarters * quarters);
    auto* const rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setMenuBar(&bar);
    const QSize room = screen()->availableGeometry().size();
    const QSize full = form.size() + QSize(0, bar.minimumHeight());
    if (full.width() <= room.width() && full.height() + titleBar <= room.height()) {
        rows->addWidget(&form);
        rows->setSizeConstraint(QLayout::SetFixedSize);
        resize(sizeHint());
    } else {
        auto* const scrolled = new QScrollArea;
        scrolled->setFocusPolicy(Qt::NoFocus); // the form's controls alone are tab stops
        scrolled->setWidget(&form);
        rows->addWidget(scrolled);
        const int bars = style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 2 * scrolled->frameWidth();
        resize((full + QSize(bars, bars)).boundedTo(room)); // where no window manager maximizes it
        setWindowState(Qt::WindowMaximized);                // with its title bar on the screen
    }
    focus->setFocus(); // lost with the form's move into this window
}

QMenuBar* createMenuBar()
{
    auto* const bar = new QMenuBar;
    auto* const style = new StillStyle;
    style->setParent(bar);
    bar->setStyle(style);
    bar->setNativeMenuBar(false); // a desktop's own bar at the top of the screen would take other keys
    return bar;
}

QString askIn(QFileDialog& dialog, QWidget* window)
{
    for (QLineEdit* const edit : dialog.findChildren<QLineEdit*>())
        edit->setCompleter(nullptr);
    dialog.setParent(window, dialog.windowFlags());
    dialog.resize(dialog.size().boundedTo(window->screen()->availableSize() - QSize(0, titleBar)));
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    dialog.setParent(nullptr, dialog.windowFlags()); // and does not go with the window
    return isAccepted ? dialog.selectedFiles().value(0) : QString();
}
