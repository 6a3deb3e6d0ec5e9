#pragma once

#include <QObject>
#include <QProcess>

#include <functional>
#include <string>
#include <vector>

class QWidget;

/// An X display for this program alone, on which its windows open. To be made before the
/// QApplication. Throws std::runtime_error when there is none to be had.
class OwnDisplay
{
public:
    OwnDisplay();
    ~OwnDisplay();

private:
    QProcess server_;
};

/// Waits until the condition holds; throws std::runtime_error when it does not for ten seconds.
void awaitThat(const char* what, const std::function<bool()>& holds);

/// The keyboard and the bell of the display, worked from beside the program's own connection to it:
/// what is pressed here takes the road of a user's keys.
class Keyboard : public QObject
{
public:
    Keyboard();
    ~Keyboard() override;

    /// Presses keys one upon the other ("Alt_L", "s", as the display names them) and lets them go.
    /// A held last key repeats as a keyboard's does. Gives how often it has reached the program.
    int press(const std::vector<std::string>& keys, bool isHeld = false);

    /// How often the bell has sounded since the last call.
    int takeBells();

    /// Gives a window the focus by hand, as no window manager runs on the display.
    void giveFocus(QWidget& window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void send(const std::string& key, bool isDown);

    void* display_; ///< X's type, whose header defines words that other headers use
    int bellEvent_ = 0;
    int arrived_ = 0; ///< presses that the program has seen, repeated ones, too
    int released_ = 0;
};
