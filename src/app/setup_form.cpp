#include "app/setup_form.h"

#include "app/announcer.h"
#include "app/key_filter.h"
#include "app/list_box.h"
#include "app/sizing_state.h"
#include "base/customer_fields.h"
#include "base/setup_choices.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <algorithm>
#include <span>

namespace
{

/// In the order of `customerFields`.
constexpr auto customerBoxes = rowsNamed<SetupControl, customerFields, &CustomerField::box>();

/// The caption above each list, which has no access key, names it to screen readers.
constexpr SetupControl listCaptions[][2] = {
    {"lblPressureUnits", "lstPressure"}, {"lblFlow", "lstFlow"}, {"lblTemp", "lstTemp"}, {"lblVolume", "lstVolume"}};

/// Tooltips of the lists.
constexpr struct
{
    SetupControl control;
    const char* help;
} helps[] = {
    {"lstPressure", "The unit of the pressure at the valve. Gauge pressure."},
    {"lstFlow", "The unit of all flows of gas: SCFH at 60 degF and 14.696 psia, Nm3/Hr at 0 degC."},
    {"lstTemp", "The unit of boiling point and flash point."},
    {"lstVolume", "The unit of the tank volume."},
};

} // namespace

struct SetupForm::Handlers
{
    SetupForm& form;
    SizingState& state;

    /// An option, the choice that it stands for, and what selecting it does.
    struct Option
    {
        SetupControl name;
        const char* choice;
        void (Handlers::*click)() const;
    };
    static const Option modelOptions[];
    static const Option typeOptions[];
    static const Option methodOptions[];
    static const Option unitOptions[];

    void Form_Load(const LocaleInfo& locale) const;
    void optSeries61_Click() const { chooseModel(choice::series61); }
    void optSeries63_Click() const { chooseModel(choice::series63); }
    void optPad_Click() const { chooseType(choice::pad); }
    void optDepad_Click() const { chooseType(choice::depad); }
    void optDD_Click() const { state.SizingMethod = choice::directDisplacement; }
    void optAPI2000_Click() const { state.SizingMethod = choice::api2000; }
    void optUSUnits_Click() const { chooseUnits(choice::us); }
    void optMetricUnits_Click() const { chooseUnits(choice::metric); }
    void cmdContinue_Click() const;

    void chooseModel(const char* valveModel) const;
    void chooseType(const char* valveType) const;
    void chooseUnits(const char* unitSystem) const;

    void connectAll() const;
    void resetState(const LocaleInfo& locale) const;

    /// Refills the pressure and flow lists for the selected options; they stay empty while an option is missing.
    void fillPressureAndFlow() const;

    QRadioButton& option(SetupControl name) const { return form.controls_.get<QRadioButton>(name); }
    ListBox& list(SetupControl name) const { return form.controls_.get<ListBox>(name); }

    /// The choice of the selected option; "" when none is.
    const char* selected(std::span<const Option> options) const
    {
        const auto found =
            std::ranges::find_if(options, [&](const Option& row) { return option(row.name).isChecked(); });
        return found == options.end() ? "" : found->choice;
    }
};

const SetupForm::Handlers::Option SetupForm::Handlers::modelOptions[] = {
    {"optSeries61", choice::series61, &Handlers::optSeries61_Click},
    {"optSeries63", choice::series63, &Handlers::optSeries63_Click},
};
const SetupForm::Handlers::Option SetupForm::Handlers::typeOptions[] = {
    {"optPad", choice::pad, &Handlers::optPad_Click},
    {"optDepad", choice::depad, &Handlers::optDepad_Click},
};
const SetupForm::Handlers::Option SetupForm::Handlers::methodOptions[] = {
    {"optDD", choice::directDisplacement, &Handlers::optDD_Click},
    {"optAPI2000", choice::api2000, &Handlers::optAPI2000_Click},
};
const SetupForm::Handlers::Option SetupForm::Handlers::unitOptions[] = {
    {"optUSUnits", choice::us, &Handlers::optUSUnits_Click},
    {"optMetricUnits", choice::metric, &Handlers::optMetricUnits_Click},
};

SetupForm::SetupForm(SizingState& state, const LocaleInfo& locale)
    : controls_(*this, FrameOrigin::frame, setupFormWidth, setupFormHeight)
{
    setObjectName(QStringLiteral("frmFirst"));
    setWindowTitle(
        QStringLiteral("Halvor-ORM  Blanketing Valve Sizing Application - Version " SIZING_VERSION)); // two spaces
    for (const SetupControl frame : {SetupControl("frmPadDepad"), SetupControl("frmDDAPI")})
        paintLightGrey(controls_.get<QGroupBox>(frame));
    for (const auto& [caption, listName] : listCaptions) {
        auto& label = controls_.get<QLabel>(caption);
        auto& list = controls_.get<ListBox>(listName);
        label.setBuddy(&list);
        list.setAccessibleName(label.text());
    }
    new Announcer(*this);
    for (const auto& [control, help] : helps)
        controls_.get<QWidget>(control).setToolTip(QString::fromLatin1(help));
    for (std::size_t field = 0; field < customerBoxes.size(); ++field)
        controls_.get<QWidget>(customerBoxes[field]).setToolTip(QString::fromLatin1(customerFields[field].help));
    const Handlers handlers{*this, state};
    handlers.connectAll();
    handlers.Form_Load(locale);
    controls_.get<QRadioButton>("optSeries61").setFocus();
    centreOnScreen(*this);
}

void SetupForm::Handlers::connectAll() const
{
    for (const std::span<const Option> options :
         {std::span<const Option>(modelOptions), {typeOptions}, {methodOptions}, {unitOptions}})
        for (const Option& row : options)
            connect(&option(row.name), &QRadioButton::toggled, &form, [handlers = *this, &row](bool isSelected) {
                if (isSelected)
                    (handlers.*row.click)();
            });
    onClick(form.controls_.get<QPushButton>("cmdContinue"), form, [handlers = *this] { handlers.cmdContinue_Click(); });
}

void SetupForm::Handlers::Form_Load(const LocaleInfo& locale) const
{
    resetState(locale);
    for (const SetupControl name :
         std::initializer_list<SetupControl>{"optUSUnits", "optSeries61", "optPad", "optAPI2000"})
        option(name).setChecked(true);
    for (std::size_t field = 0; field < customerBoxes.size(); ++field)
        form.controls_.get<QLineEdit>(customerBoxes[field])
            .setText(QString::fromStdString(state.*customerFields[field].text));
}

void SetupForm::Handlers::resetState(const LocaleInfo& locale) const
{
    state.InputError = false;
    state.SizingError = false;
    modDecSep(state, locale);
    state.ValidChars = "1234567890" + state.DecSep;
    const SizingState defaults;
    state.UnitSystem = defaults.UnitSystem;
    state.ValveType = defaults.ValveType;
    state.SizingMethod = defaults.SizingMethod;
    state.SizingCase = defaults.SizingCase;
    state.ValveModel = defaults.ValveModel;
}

void SetupForm::Handlers::chooseModel(const char* valveModel) const
{
    state.ValveModel = valveModel;
    for (const Option& type : typeOptions) {
        const bool offered = isOffered(valveModel, type.choice);
        option(type.name).setEnabled(offered);
        if (!offered && option(type.name).isChecked()) // the data file has no table for such a valve
            option("optPad").setChecked(true);
    }
    fillPressureAndFlow();
}

void SetupForm::Handlers::chooseType(const char* valveType) const
{
    state.ValveType = valveType;
    fillPressureAndFlow();
}

void SetupForm::Handlers::chooseUnits(const char* unitSystem) const
{
    state.UnitSystem = unitSystem;
    fillPressureAndFlow();
    if (const UnitSystem* const units = unitsOf(unitSystem)) {
        list("lstTemp").fill({units->temperature});
        list("lstVolume").fill({units->volume});
    }
}

void SetupForm::Handlers::fillPressureAndFlow() const
{
    const std::string_view valveModel = selected(modelOptions);
    const std::string_view valveType = selected(typeOptions);
    const std::string_view unitSystem = selected(unitOptions);
    QStringList pressure;
    for (const Offer& offer : offers)
        if (valveModel == offer.valveModel && valveType == offer.valveType && unitSystem == offer.unitSystem)
            pressure.append(QString::fromUtf8(offer.pressUnits));
    QStringList flow;
    if (const UnitSystem* const units = unitsOf(unitSystem); units != nullptr && !pressure.isEmpty())
        flow.append(QString::fromUtf8(units->flow));
    list("lstPressure").fill(pressure);
    list("lstFlow").fill(flow);
}

void SetupForm::Handlers::cmdContinue_Click() const
{
    const std::string pressUnits = list("lstPressure").currentItem()->text().toStdString();
    if (const Offer* const offer = findOffer(selected(modelOptions), state.ValveType, pressUnits))
        storeOffer(state, *offer);
    for (std::size_t field = 0; field < customerBoxes.size(); ++field)
        state.*customerFields[field].text = form.controls_.get<QLineEdit>(customerBoxes[field]).text().toStdString();
    emit form.continued();
}
