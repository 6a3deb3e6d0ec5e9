#pragma once

#include "app/numeric_box.h"
#include "app/screens.h"
#include "base/message_box.h"
#include "keyboard.h"
#include "report/printers.h"

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QLineEdit>
#include <QThread>
#include <QUrl>

#include <iterator>
#include <map>
#include <optional>
#include <random>

/// What the program does beside its windows.
struct Outside : QObject, MessageBox, Printers
{
    Q_OBJECT

public:
    int messages = 0;
    mutable int pages = 0;
    int guides = 0;

    void show(const std::string&) override { ++messages; }
    int count() const override { return 1; }
    std::string print(const SummaryForm&) override
    {
        ++pages;
        QThread::msleep(60); // the program is busy for a while, as with a real printer
        return "queue";
    }

public slots:
    void openGuide(const QUrl&) { ++guides; }
};

using Texts = std::map<QString, QString>;

/// What can be seen of the program.
struct Seen
{
    QString form;
    QString focus;
    Texts boxes;
    Texts labels;
    int selectionStart = -1; ///< of the box with the focus; no selection: the place of the cursor
    int selectionLength = 0;
    QString clipboard;
    int pages = 0;
    int guides = 0;
};

using Keys = std::vector<std::string>; // as the display names them, pressed one upon the other

struct KeyOfCharacter
{
    const char* key;
    QChar typed;
};

/// A walk of random keys through both forms. After each key, what is seen is compared with what the key must come to.
class Walk
{
public:
    /// A number may have each of `separators`; those in `typed` pass the key filter.
    Walk(const LocaleInfo& locale, QString typed, QString separators, unsigned seed)
        : screens_(locale, outside_, outside_, CAPACITIES_FILE), typed_(std::move(typed)),
          separators_(std::move(separators)), random_(seed)
    {
        QDesktopServices::setUrlHandler(QStringLiteral("file"), &outside_, "openGuide");
        screens_.showSetup();
        keyboard_.giveFocus(*screens_.form()->window());
    }
    ~Walk() { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    /// Presses so many keys; gives the number of differences.
    int run(int keys)
    {
        for (keysLeft_ = keys; keysLeft_ > 0;)
            step();
        return differences_;
    }

private:
    int upTo(int most) { return std::uniform_int_distribution<>(0, most)(random_); }
    template <typename Choices>
    auto oneOf(const Choices& choices)
    {
        return *std::next(std::begin(choices), upTo(static_cast<int>(std::size(choices)) - 1));
    }

    static QWidget& focus() { return *QApplication::focusWidget(); }
    static QLineEdit* boxAtFocus()
    {
        auto* const gas = qobject_cast<QComboBox*>(&focus());
        return gas != nullptr ? gas->lineEdit() : qobject_cast<QLineEdit*>(&focus());
    }
    bool isNumeric(const QString& box) const { return screens_.form()->findChild<NumericBox*>(box) != nullptr; }
    bool hasAccessKey(const std::string& key) const;

    Seen look() const;
    void step();
    void press(const Keys& keys);
    void type(const KeyOfCharacter& key);
    void edit(const std::string& key);
    void pressWithoutEffect(const Keys& keys, int bells);
    void askForHelp(const Keys& keys);
    void openMenu();
    void moveFocus(bool isBackward);
    void pressAccessKey(const std::string& key);
    void pressButton(const Keys& keys, const QString& button);

    void expectEdited(const QString& box, const QString& text, int cursor, bool isTyped);
    void expectEntered(const QString& box);
    void expectCleared();
    void expectSized(const Seen& after);
    std::optional<double> number(QString text) const;
    QString refusedBox() const;
    void compare(const char* what, const QString& expected, const QString& found);
    void check();

    Outside outside_;
    Screens screens_;
    QString typed_;
    QString separators_;
    std::mt19937 random_;
    Keyboard keyboard_;
    int keysLeft_ = 0;
    int differences_ = 0;

    // Of the step that is being made.
    Keys keys_;
    bool isHeld_ = false;
    int times_ = 0; ///< that the key reached the program
    Seen expected_;
    int bells_ = 0;
    bool areLabelsKnown_ = true;
};
