// Whether a key is ever lost, doubled or taken by something else: key_walk [HOW MANY [SEED]]
//
// Presses random keys in the program's real windows, on a display of its own, and works out beside it what each must
// come to: a typed character goes into the box or beeps, a button or shortcut acts once however long its key is held, a
// box is entered with its first ten characters selected, and nothing else changes. Exit status 1 on a difference, 2
// when that could not be found out.

#include "app/numeric_box.h"
#include "app/screens.h"
#include "base/locale_info.h"
#include "base/message_box.h"
#include "keyboard.h"
#include "report/printers.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDesktopServices>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QThread>
#include <QToolTip>
#include <QUrl>

#include <algorithm>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

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
    void print(const SummaryForm&) override
    {
        ++pages;
        QThread::msleep(60); // the program is busy for a while, as with a real printer
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

constexpr const char* tabOrder[] = {"txtPumpRate",     "txtPressure",     "txtTankVolume", "cmbBlanketingGas",
                                    "txtSpecGrav",     "txtBoilingPoint", "txtFlashPoint", "txtStoredMaterial",
                                    "cmdCalcFlowRate", "cmdPrint",        "cmdClear",      "cmdNewCalc",
                                    "cmdExit"};
constexpr const char* resultLabels[] = {
    "lblPRFlow", "lblBRFlow",        "lblTotalFlow",        "lblSGGas",
    "lblCV",     "lblValveBodySize", "lblMaxValveCapacity", "lblPercentValveCapacity",
    "lblHFPLFP", "lblComments"};

struct KeyOfCharacter
{
    const char* key;
    QChar typed;
};
constexpr KeyOfCharacter characters[] = {{"0", u'0'},     {"1", u'1'}, {"2", u'2'},      {"5", u'5'},
                                         {"6", u'6'},     {"9", u'9'}, {"period", u'.'}, {"comma", u','},
                                         {"minus", u'-'}, {"a", u'a'}, {"e", u'e'},      {"space", u' '}};
constexpr const char* editingKeys[] = {"BackSpace", "Delete", "Home", "End", "Left"};
constexpr const char* controlKeys[] = {"a", "c", "s", "v", "x", "y", "z", "5"};

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

bool Walk::hasAccessKey(const std::string& key) const
{
    const auto isIt = [&](const QWidget* control, const QString& caption) {
        const QKeySequence mnemonic = QKeySequence::mnemonic(caption);
        return control->isVisible() && control->isEnabled() && !mnemonic.isEmpty() &&
               mnemonic[0].key() == QString::fromStdString(key).toUpper().front().unicode();
    };
    const auto labels = screens_.form()->findChildren<QLabel*>();
    const auto buttons = screens_.form()->findChildren<QAbstractButton*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) { return isIt(label, label->text()); }) ||
           std::ranges::any_of(buttons, [&](const QAbstractButton* button) { return isIt(button, button->text()); });
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

/// Results never stand beside other figures than those that they were made from.
void Walk::expectEdited(const QString& box, const QString& text, int cursor, bool isTyped)
{
    const bool isEdit = text != std::exchange(expected_.boxes[box], text) || isTyped;
    if (isEdit && box != QLatin1String("txtStoredMaterial"))
        for (const char* const label : resultLabels)
            if (expected_.labels.contains(QLatin1String(label)) &&
                !(box == QLatin1String("txtTankVolume") && label == std::string("lblHFPLFP")))
                expected_.labels[QLatin1String(label)].clear();
    expected_.selectionStart = cursor;
    expected_.selectionLength = 0;
}

void Walk::type(const KeyOfCharacter& key)
{
    const QString box = focus().objectName();
    const bool passes = !isNumeric(box) || key.typed.isDigit() || typed_.contains(key.typed);
    press({key.key});
    if (passes) {
        QString text = expected_.boxes[box];
        text.replace(expected_.selectionStart, expected_.selectionLength, QString(times_, key.typed));
        expectEdited(box, text, expected_.selectionStart + times_, true);
    } else
        bells_ = times_;
    check();
}

void Walk::edit(const std::string& key)
{
    const QString box = focus().objectName();
    press({key});
    QString text = expected_.boxes[box];
    int at = expected_.selectionStart;
    int selected = expected_.selectionLength;
    for (int time = 0; time < times_; ++time) {
        if (key == "BackSpace" && selected == 0 && at > 0)
            text.remove(--at, 1);
        else if (key == "Delete" && selected == 0)
            text.remove(at, 1);
        else if (key == "BackSpace" || key == "Delete")
            text.remove(at, selected);
        else if (key == "Left")
            at = selected > 0 ? at : std::max(at - 1, 0);
        else
            at = key == "Home" ? 0 : static_cast<int>(text.size());
        selected = 0;
    }
    expectEdited(box, text, at, false);
    check();
}

void Walk::pressWithoutEffect(const Keys& keys, int bells)
{
    press(keys);
    bells_ = bells * times_;
    check();
}

void Walk::askForHelp(const Keys& keys)
{
    press(keys);
    expected_.guides += keys.front() == "F1";
    if (keys.front() != "F1" && QToolTip::isVisible() == focus().toolTip().isEmpty())
        compare("the bubble", focus().toolTip(), QToolTip::text());
    check();
}

/// A character that none of the menu's entries has beeps.
void Walk::openMenu()
{
    isHeld_ = false;
    press({"Menu"});
    awaitThat("the menu opens", [] { return QApplication::activePopupWidget() != nullptr; });
    if (upTo(1) == 0) {
        press({"5"});
        bells_ = 1;
    }
    press({"Escape"});
    awaitThat("the menu closes", [] { return QApplication::activePopupWidget() == nullptr; });
    check();
}

void Walk::expectEntered(const QString& box)
{
    expected_.focus = box;
    const Seen after = look();
    expected_.selectionStart = isNumeric(box) ? 0 : after.selectionStart;
    expected_.selectionLength =
        isNumeric(box) ? static_cast<int>(std::min<qsizetype>(10, expected_.boxes[box].size())) : after.selectionLength;
}

void Walk::moveFocus(bool isBackward)
{
    std::vector<QString> order;
    for (const char* const name : tabOrder)
        if (screens_.form()->findChild<QWidget*>(QLatin1String(name))->isVisible())
            order.push_back(QLatin1String(name));
    const auto count = static_cast<int>(order.size());
    const auto at = static_cast<int>(std::ranges::find(order, focus().objectName()) - order.begin());
    press(isBackward ? Keys{"Shift_L", "Tab"} : Keys{"Tab"});
    expectEntered(order[static_cast<std::size_t>((at + (isBackward ? count - 1 : 1) * times_) % count)]);
    check();
}

/// Where it leads is a matter of the tests; here, only how the box is entered.
void Walk::pressAccessKey(const std::string& key)
{
    const bool isOne = hasAccessKey(key);
    const bool beeps = !isOne && isNumeric(focus().objectName());
    if (!isOne && !beeps)
        return; // a letter with Alt in a box that takes letters
    press({"Alt_L", key});
    bells_ = beeps ? times_ : 0;
    if (const QString now = focus().objectName(); now != expected_.focus)
        expectEntered(now);
    check();
}

void Walk::expectCleared()
{
    for (const char* const box :
         {"txtPumpRate", "txtPressure", "txtFlashPoint", "txtBoilingPoint", "txtStoredMaterial"})
        expected_.boxes[QLatin1String(box)].clear();
    expected_.boxes[QStringLiteral("txtTankVolume")] = u'0';
    for (const char* const label : resultLabels)
        expected_.labels[QLatin1String(label)].clear();
    expected_.labels[QStringLiteral("lblSGGas2")].clear();
}

/// Digits with at most one separator.
std::optional<double> Walk::number(QString text) const
{
    for (const QChar separator : separators_)
        text.replace(separator, u'.');
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    return isNumber && text.back() != u' ' && text.front() != u' ' ? std::optional(value) : std::nullopt;
}

/// The box that the checks of the entries refuse; "" when they pass.
QString Walk::refusedBox() const
{
    const auto text = [&](const char* box) { return expected_.boxes.at(QLatin1String(box)); };
    const auto value = [&](const char* box) { return number(text(box)); };
    const bool isDepad = expected_.labels.at(QStringLiteral("lblValveType")) == QLatin1String("Depad");
    const bool isApi = expected_.labels.at(QStringLiteral("lblSizingMethod")) == QLatin1String("API-2000");
    const bool isMetric = expected_.labels.at(QStringLiteral("lblFlow1")) != QLatin1String("SCFH of");
    for (const char* const box : {"txtPumpRate", "txtPressure", "txtSpecGrav"})
        if (text(box).isEmpty())
            return QLatin1String(box);
    for (const char* const box : {"txtSpecGrav", "txtPumpRate", "txtPressure", "txtTankVolume"})
        if (!value(box))
            return QLatin1String(box);
    if (*value("txtPumpRate") > 100000)
        return QStringLiteral("txtPumpRate");
    for (const char* const box : {"txtPressure", "txtPumpRate"})
        if (*value(box) <= 0)
            return QLatin1String(box);
    if (isDepad && isApi && text("txtFlashPoint").isEmpty() && text("txtBoilingPoint").isEmpty())
        return QStringLiteral("txtBoilingPoint");
    const double volume = *value("txtTankVolume");
    return isApi && (volume <= 0 || volume > (isMetric ? 30000 : 7560000)) ? QStringLiteral("txtTankVolume")
                                                                           : QString();
}

/// A refused entry is entered; a pressure outside of its range, too, which the captions tell.
void Walk::expectSized(const Seen& after)
{
    QString refused = refusedBox();
    const bool isRange = refused.isEmpty() &&
                         after.labels.at(QStringLiteral("lblComments")).contains(QLatin1String("ressure")) &&
                         after.focus == QLatin1String("txtPressure");
    if (isRange)
        refused = after.focus;
    if (!refused.isEmpty())
        expectEntered(refused);
    areLabelsKnown_ = false;
}

void Walk::pressButton(const Keys& keys, const QString& button)
{
    const int messages = outside_.messages;
    const bool isByAccessKey = keys.size() > 1;
    const Seen before = expected_;
    if (isByAccessKey) {
        expected_.focus = button;
        expected_.selectionStart = -1;
        expected_.selectionLength = 0;
    }
    press(keys);
    if (button == QLatin1String("cmdNewCalc") || button == QLatin1String("cmdContinue")) {
        const bool isNew = button == QLatin1String("cmdNewCalc");
        compare("form", isNew ? QStringLiteral("frmFirst") : QStringLiteral("frmMain"), screens_.form()->objectName());
        keyboard_.giveFocus(*screens_.form()->window());
        expected_ = look();
    } else if (button == QLatin1String("cmdPrint")) {
        const bool isSized = !before.labels.at(QStringLiteral("lblTotalFlow")).isEmpty() &&
                             !before.labels.at(QStringLiteral("lblPercentValveCapacity")).isEmpty();
        expected_.pages += isSized;
        if (!isSized)
            expected_.labels[QStringLiteral("lblComments")] = QStringLiteral("You must size a valve before printing.");
    } else if (button == QLatin1String("cmdClear") || outside_.messages != messages)
        expectCleared();
    else
        expectSized(look());
    check();
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

#include "key_walk.moc"
