#include "keyboard.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include <X11/XKBlib.h>
#include <X11/extensions/XTest.h>
#undef KeyRelease // a name of the toolkit, too

#include <stdexcept>

namespace
{

constexpr int patience = 10000; // milliseconds for any one thing to happen

Display* asDisplay(void* display)
{
    return static_cast<Display*>(display);
}

} // namespace

OwnDisplay::OwnDisplay()
{
    server_.start(QStringLiteral("Xvfb"),
                  {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"), QStringLiteral("0"),
                   QStringLiteral("1280x1024x24"), QStringLiteral("-nolisten"), QStringLiteral("tcp")});
    if (!server_.waitForReadyRead(patience))
        throw std::runtime_error("no display: is Xvfb installed?");
    qputenv("DISPLAY", ":" + server_.readLine().trimmed());
    qputenv("QT_QPA_PLATFORM", "xcb");
}

OwnDisplay::~OwnDisplay()
{
    server_.terminate();
    server_.waitForFinished();
}

void awaitThat(const char* what, const std::function<bool()>& holds)
{
    QElapsedTimer time;
    for (time.start(); !holds(); QGuiApplication::sync())
        if (time.elapsed() > patience)
            throw std::runtime_error(std::string("waited in vain that ") + what);
}

Keyboard::Keyboard() : display_(XOpenDisplay(nullptr))
{
    int major = XkbMajorVersion;
    int minor = XkbMinorVersion;
    if (display_ == nullptr ||
        XkbQueryExtension(asDisplay(display_), nullptr, &bellEvent_, nullptr, &major, &minor) == False)
        throw std::runtime_error("the display has no keyboard extension");
    XkbSelectEvents(asDisplay(display_), XkbUseCoreKbd, XkbBellNotifyMask, XkbBellNotifyMask);
    XAutoRepeatOff(asDisplay(display_));
    qApp->installEventFilter(this);
}

Keyboard::~Keyboard()
{
    XCloseDisplay(asDisplay(display_));
}

int Keyboard::press(const std::vector<std::string>& keys, bool isHeld)
{
    const int before = static_cast<int>(keys.size()) - 1;
    arrived_ = 0;
    released_ = 0;
    for (const std::string& key : keys)
        send(key, true);
    awaitThat("the key arrives", [&] { return arrived_ > before; });
    if (isHeld) {
        XkbSetAutoRepeatRate(asDisplay(display_), XkbUseCoreKbd, 20, 5); // milliseconds: the first, and between two
        XAutoRepeatOn(asDisplay(display_));
        XSync(asDisplay(display_), False);
        for (int round = 0; round < 15; ++round, QThread::msleep(5))
            QGuiApplication::sync();
        XAutoRepeatOff(asDisplay(display_));
    }
    for (auto key = keys.rbegin(); key != keys.rend(); ++key)
        send(*key, false);
    constexpr int shortPatience = 200; // milliseconds: a release may go to a window that is gone
    QElapsedTimer time;
    for (time.start(); released_ < static_cast<int>(keys.size()) && time.elapsed() < shortPatience;)
        QGuiApplication::sync();
    QGuiApplication::sync();
    return arrived_ - before;
}

int Keyboard::takeBells()
{
    int bells = 0;
    XSync(asDisplay(display_), False);
    for (XEvent event; XPending(asDisplay(display_)) > 0;) {
        XNextEvent(asDisplay(display_), &event);
        bells += event.type == bellEvent_;
    }
    return bells;
}

void Keyboard::giveFocus(QWidget& window)
{
    awaitThat("the window is shown", [&] { return window.windowHandle()->isExposed(); });
    awaitThat("the window has the focus", [&] {
        XSetInputFocus(asDisplay(display_), window.winId(), RevertToPointerRoot, CurrentTime);
        XSync(asDisplay(display_), False);
        return QApplication::activeWindow() == &window;
    });
}

bool Keyboard::eventFilter(QObject* watched, QEvent* event)
{
    arrived_ += event->type() == QEvent::ShortcutOverride && watched->isWindowType(); // each press begins so
    released_ += event->type() == QEvent::KeyRelease && watched->isWindowType() &&
                 !static_cast<QKeyEvent*>(event)->isAutoRepeat();
    return false;
}

void Keyboard::send(const std::string& key, bool isDown)
{
    const KeySym symbol = XStringToKeysym(key.c_str());
    const KeyCode code = XKeysymToKeycode(asDisplay(display_), symbol);
    if (code == 0)
        throw std::runtime_error("the keyboard has no key " + key);
    XTestFakeKeyEvent(asDisplay(display_), code, isDown ? True : False, CurrentTime);
    XSync(asDisplay(display_), False);
}
