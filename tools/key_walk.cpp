// Whether a key is ever lost, doubled or taken by something else: key_walk [HOW MANY [SEED]]
//
// Presses random keys in the program's real windows, on a display of its own, and works out beside it what each must
// come to: a typed character goes into the box or beeps, a button or shortcut acts once however long its key is held, a
// box is entered with its first ten characters selected, and nothing else changes. Exit status 1 on a difference, 2
// when that could not be found out.

#include "key_walk.h"
#include "base/locale_info.h"

#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>

#include <algorithm>
#include <iostream>
#include <stdexcept>
#include <tuple>

namespace
{

constexpr KeyOfCharacter characters[] = {{"0", u'0'},     {"1", u'1'}, {"2", u'2'},      {"5", u'5'},
                                         {"6", u'6'},     {"9", u'9'}, {"period", u'.'}, {"comma", u','},
                                         {"minus", u'-'}, {"a", u'a'}, {"e", u'e'},      {"space", u' '}};
constexpr const char* editingKeys[] = {"BackSpace", "Delete", "Home", "End", "Left"};
constexpr const char* controlKeys[] = {"a", "c", "s", "v", "x", "y", "z", "5"};

} // namespace

Seen Walk::look() const
{
    Seen seen;
    seen.form = screens_.form()->objectName();
    seen.focus = focus().objectName();
    for (const auto* const box : screens_.form()->findChildren<QLineEdit*>()) // that of the gas box has no name
        seen.boxes[(box->objectName().startsWith(QLatin1String("txt")) ? box : box->parent())->objectName()] =
            box->text();
    for (const auto* const label : screens_.form()->findChildren<QLabel*>(QRegularExpression(QStringLiteral("^l|^L"))))
        seen.labels[label->objectName()] = label->text();
    if (const QLineEdit* const box = boxAtFocus()) {
        seen.selectionStart = box->hasSelectedText() ? static_cast<int>(box->selectionStart()) : box->cursorPosition();
        seen.selectionLength = static_cast<int>(box->selectionLength());
    }
    seen.clipboard = QApplication::clipboard()->text();
    seen.pages = outside_.pages;
    seen.guides = outside_.guides;
    return seen;
}

void Walk::step()
{
    const bool isSetup = screens_.form()->objectName() == QLatin1String("frmFirst");
    const QString name = focus().objectName();
    const int kind = upTo(99);
    isHeld_ = upTo(39) == 0;
    expected_ = look();
    bells_ = 0;
    areLabelsKnown_ = true;
    const bool isButton = qobject_cast<QPushButton*>(&focus()) != nullptr;
    if (boxAtFocus() != nullptr && kind < 45)
        type(oneOf(characters));
    else if (boxAtFocus() != nullptr && kind < 55)
        edit(oneOf(editingKeys));
    else if (isNumeric(name) && kind < 60)
        pressWithoutEffect(upTo(3) > 0 ? Keys{"Control_L", oneOf(controlKeys)} : Keys{"Control_L", "Shift_L", "c"}, 1);
    else if (kind < 62)
        pressWithoutEffect({upTo(1) == 0 || isButton ? "Escape" : "Return"}, isNumeric(name) ? 1 : 0);
    else if (kind < 63)
        pressWithoutEffect({upTo(1) == 0 ? "Alt_L" : "F10"}, 0); // which lead into a menu bar elsewhere
    else if (kind < 67)
        askForHelp(upTo(4) == 0 ? Keys{"F1"} : Keys{"Shift_L", "F1"});
    else if (kind < 70)
        openMenu();
    else if (isButton && name != QLatin1String("cmdExit") && kind < 85)
        pressButton({upTo(1) == 0 ? "Return" : "space"}, name);
    else if (isSetup)
        upTo(9) == 0 ? pressButton({"Alt_L", "c"}, QStringLiteral("cmdContinue"))
                     : pressAccessKey(
                           oneOf(std::initializer_list<const char*>{"1", "2", "3", "d", "m", "n", "o", "p", "r", "t"}));
    else if (kind < 88)
        moveFocus(upTo(2) == 0);
    else if (kind < 93)
        pressAccessKey(oneOf(std::initializer_list<const char*>{"b", "f", "g", "m", "o", "p", "v"}));
    else if (kind < 98)
        pressButton({"Alt_L", "s"}, QStringLiteral("cmdCalcFlowRate"));
    else if (upTo(3) > 0)
        pressButton({"Alt_L", "t"}, QStringLiteral("cmdPrint"));
    else
        upTo(1) == 0 ? pressButton({"Alt_L", "c"}, QStringLiteral("cmdClear"))
                     : pressButton({"Alt_L", "n"}, QStringLiteral("cmdNewCalc"));
}

void Walk::press(const Keys& keys)
{
    constexpr int apart = 4; // milliseconds: closer, a second press is the first one repeated
    if (!keys_.empty() && keys_.back() == keys.back())
        QThread::msleep(apart);
    keys_ = keys;
    times_ = keyboard_.press(keys, isHeld_);
    keysLeft_ -= static_cast<int>(keys.size());
}

void Walk::compare(const char* what, const QString& expected, const QString& found)
{
    if (expected == found)
        return;
    std::cout << "after";
    for (const std::string& key : keys_)
        std::cout << ' ' << key;
    std::cout << (isHeld_ ? ", held" : "") << " at " << expected_.focus.toStdString() << " of "
              << expected_.form.toStdString() << ": " << what << " \"" << found.toStdString() << "\", not \""
              << expected.toStdString() << "\"" << std::endl;
    ++differences_;
}

void Walk::check()
{
    Seen after = look();
    if (expected_.focus == QLatin1String("txtSpecGrav")) // names the gas, which is a matter of the tests
        expected_.boxes[QStringLiteral("cmbBlanketingGas")] = after.boxes[QStringLiteral("cmbBlanketingGas")];
    compare("form", expected_.form, after.form);
    compare("focus", expected_.focus, after.focus);
    for (const auto& [box, text] : expected_.boxes)
        compare(box.toUtf8(), text, after.boxes[box]);
    for (const auto& [label, text] : expected_.labels)
        if (areLabelsKnown_)
            compare(label.toUtf8(), text, after.labels[label]);
    compare("selection from", QString::number(expected_.selectionStart), QString::number(after.selectionStart));
    compare("selected", QString::number(expected_.selectionLength), QString::number(after.selectionLength));
    compare("clipboard", expected_.clipboard, after.clipboard);
    compare("pages", QString::number(expected_.pages), QString::number(after.pages));
    compare("guides", QString::number(expected_.guides), QString::number(after.guides));
    compare("bells", QString::number(bells_), QString::number(keyboard_.takeBells()));
}

namespace
{

/// The separators of numbers and of money.
struct Separators : LocaleInfo
{
    std::string number;
    std::string money;

    Separators(const char* ofNumbers, const char* ofMoney) : number(ofNumbers), money(ofMoney) {}
    std::uint32_t GetUserDefaultLCID() const override { return 1; }
    int GetLocaleInfoA(std::uint32_t, LocaleItem item, char* buffer, int length) const override
    {
        const std::string& text = item == LocaleItem::moneyDecimal ? money : number;
        if (item != LocaleItem::moneyDecimal && item != LocaleItem::numberDecimal)
            return 0;
        if (length > static_cast<int>(text.size()))
            std::copy_n(text.c_str(), text.size() + 1, buffer);
        return static_cast<int>(text.size()) + 1;
    }
};

int walkAll(int keys, unsigned seed)
{
    int differences = 0;
    for (const auto& [name, locale, typed, separators] :
         {std::tuple{"points", Separators(".", "."), ".", "."},
          {"commas", Separators(",", ","), ",", ","},
          {"points, commas of money", Separators(".", ","), ",", ".,"}}) {
        const int found = Walk(locale, QString::fromLatin1(typed), QString::fromLatin1(separators), seed++).run(keys);
        std::cout << name << ": " << keys << " keys, " << found << " differences" << std::endl;
        differences += found;
    }
    return differences;
}

} // namespace

int main(int argc, char* argv[])
{
    try {
        const int keys = argc > 1 ? std::stoi(argv[1]) : 20000;
        const auto seed = static_cast<unsigned>(argc > 2 ? std::stoul(argv[2]) : 1);
        const OwnDisplay display;
        QApplication application(argc, argv);
        QApplication::setStyle(QStringLiteral("Fusion"));
        QApplication::setQuitOnLastWindowClosed(false);
        return walkAll(keys, seed) == 0 ? 0 : 1;
    } catch (const std::exception& failure) {
        std::cerr << "key_walk: " << failure.what() << '\n';
        return 2;
    }
}
