// What each kind of key must come to.

#include "key_walk.h"

#include "app/bubble.h"

#include <QLabel>
#include <QPushButton>

#include <algorithm>

namespace
{

constexpr const char* tabOrder[] = {"txtPumpRate",     "txtPressure",     "txtTankVolume", "cmbBlanketingGas",
                                    "txtSpecGrav",     "txtBoilingPoint", "txtFlashPoint", "txtStoredMaterial",
                                    "cmdCalcFlowRate", "cmdPrint",        "cmdClear",      "cmdNewCalc",
                                    "cmdExit"};
constexpr const char* resultLabels[] = {
    "lblPRFlow", "lblBRFlow",        "lblTotalFlow",        "lblSGGas",
    "lblCV",     "lblValveBodySize", "lblMaxValveCapacity", "lblPercentValveCapacity",
    "lblHFPLFP", "lblComments"};

} // namespace

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
    if (keys.front() != "F1" && bubbleText().isEmpty() != focus().toolTip().isEmpty())
        compare("the bubble", focus().toolTip(), bubbleText());
    check();
}

/// Both menus of the bar, the context menu and that of a box. A character that none of the entries has beeps.
void Walk::openMenu()
{
    const Keys keys = oneOf(std::initializer_list<Keys>{{"Menu"}, {"Shift_L", "F10"}, {"Alt_L", "e"}, {"Alt_L", "h"}});
    isHeld_ = isHeld_ && keys.front() != "Menu"; // the display has its repetitions go to the menu
    press(keys);
    awaitThat("the menu opens", [] { return QApplication::activePopupWidget() != nullptr; });
    if (upTo(1) == 0) {
        press({"5"});
        bells_ = times_;
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
