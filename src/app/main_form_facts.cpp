#include "app/main_form_facts.h"

#include "app/sizing_state.h"
#include "base/customer_fields.h"

#include <QGroupBox>

#include <algorithm>
#include <optional>

namespace
{

/// A value or an entry with its caption and its unit.
struct Fact
{
    MainControl caption;
    MainControl value;
    std::optional<MainControl> unit;

    consteval Fact(const char* captionName, const char* valueName, const char* unitName = nullptr)
        : caption(captionName), value(valueName)
    {
        if (unitName != nullptr)
            unit = MainControl(unitName);
    }
};

/// What screen readers say beside a value, and what is copied, in that order.
constexpr Fact facts[] = {
    {"lblValveModellbl", "lblValveModel"},
    {"lblValveTypelbl", "lblValveType"},
    {"lblSizingMethodlbl", "lblSizingMethod"},
    {"lblSizingMethodlbl", "lblHFPLFP"},
    {"lblPumpRate", "txtPumpRate", "lblPumpRateUnits"},
    {"lblPressure", "txtPressure", "lblPressureUnits"},
    {"lblTankVolume", "txtTankVolume", "lblVolumeUnits"},
    {"lblBlanketingGas", "cmbBlanketingGas"},
    {"lblSpecGravlbl", "txtSpecGrav"},
    {"lblBoilingPoint", "txtBoilingPoint", "lblTempUnits1"},
    {"lblFlashPoint", "txtFlashPoint", "lblTempUnits2"},
    {"lblStoredMaterial", "txtStoredMaterial"},
    {"lblPRFlowLabel", "lblPRFlow", "lblFlow1"},
    {"lblBRFlowLabel", "lblBRFlow", "lblFlow1"},
    {"lblTotalFlowLabel", "lblTotalFlow", "lblFlow1"},
    {"lblSGGaslbl", "lblSGGas"},
    {"lblCVlbl", "lblCV"},
    {"lblValveBodySizelbl", "lblValveBodySize"},
    {"lblMaxValveCapacitylbl", "lblMaxValveCapacity", "lblFlow2"},
    {"Label2", "lblSGGas2"},
    {"lblPercentValveCapacitylbl", "lblPercentValveCapacity"},
};

/// The property with the text of a label or box.
const char* valueProperty(const QWidget& control)
{
    return control.inherits("QComboBox") ? "currentText" : "text";
}

/// A caption without its access key and the signs around it: "+ Inbreathing Flow", "Tank &Volume:".
QString plainCaption(QString caption)
{
    caption.remove(u'&').remove(u':');
    while (caption.startsWith(u'+') || caption.startsWith(u'=') || caption.startsWith(u' '))
        caption.remove(0, 1);
    return caption;
}

} // namespace

void describeValues(const Controls<mainFormRows>& controls)
{
    for (const Fact& fact : facts) {
        auto& value = controls.get<QWidget>(fact.value);
        if (qobject_cast<QLabel*>(&value) != nullptr)
            value.setAccessibleDescription(controls.get<QLabel>(fact.caption).text());
        else if (fact.unit) // the caption is the box's name
            value.setAccessibleDescription(controls.get<QLabel>(*fact.unit).text());
    }
    controls.get<QLabel>("lblComments").setAccessibleDescription(controls.get<QGroupBox>("frmComments").title());
}

void hideFact(const Controls<mainFormRows>& controls, MainControl value)
{
    const Fact& fact = *std::ranges::find(facts, value.index, [](const Fact& row) { return row.value.index; });
    controls.get<QWidget>(fact.caption).hide();
    controls.get<QWidget>(fact.value).hide();
    if (fact.unit)
        controls.get<QWidget>(*fact.unit).hide();
}

QString resultsText(const Controls<mainFormRows>& controls, const SizingState& state)
{
    QString lines;
    const auto add = [&](const QString& name, const QString& value, const QString& unit = {}) {
        const auto cell = [](const QString& text) { // on one line, and nothing that a spreadsheet would work out
            const QString line = text.simplified();
            return !line.isEmpty() && QStringLiteral("=+-@").contains(line.front()) ? u' ' + line : line;
        };
        if (!value.isEmpty())
            lines += name + u'\t' + cell(value) + (unit.isEmpty() ? unit : u'\t' + unit) + u'\n';
    };
    for (const CustomerField& field : customerFields)
        add(QString::fromLatin1(field.name), QString::fromStdString(state.*field.text));
    for (const Fact& fact : facts) {
        const auto& value = controls.get<QWidget>(fact.value);
        // The gravity that the capacity refers to stays on the form when an edit has emptied the capacity.
        const bool isStale = fact.value.index == MainControl("lblSGGas2").index &&
                             controls.get<QLabel>("lblMaxValveCapacity").text().isEmpty();
        if (!value.isHidden() && !isStale)
            add(plainCaption(controls.get<QLabel>(fact.caption).text()),
                value.property(valueProperty(value)).toString(),
                fact.unit ? controls.get<QLabel>(*fact.unit).text().remove(QStringLiteral(" of")) : QString());
    }
    const auto& comments = controls.get<QLabel>("lblComments");
    add(controls.get<QGroupBox>("frmComments").title(), comments.text());
    add(QStringLiteral("Data File"), comments.toolTip());
    return lines;
}
