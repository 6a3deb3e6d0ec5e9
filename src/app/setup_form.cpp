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
#include <array>
#include <functional>
#include <ranges>
#include <span>
#include <string_view>
#include <utility>

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

/// An option and the choice that it stands for.
struct Option
{
    SetupControl name;
    const char* choice;
};

/// The option that is captioned with the name of a model.
consteval SetupControl optionOf(const Model& model)
{
    const auto isText = [](char c) { return c != '&'; };
    for (const ControlRow& row : setupFormRows)
        if (std::ranges::equal(std::string_view(row.caption) | std::views::filter(isText),
                               std::string_view(model.name)))
            return row.name;
    throw "a model has no option in app/setup_form_layout.h";
}

template <std::size_t... at>
consteval auto optionsOfModels(std::index_sequence<at...>)
{
    return std::array{Option{optionOf(models[at]), models[at].name}...};
}

constexpr auto modelOptions = optionsOfModels(std::make_index_sequence<std::size(models)>());
static_assert(std::ranges::count_if(setupFormRows,
                                    [](const ControlRow& row) {
                                        return row.kind == Kind::option && row.frame == std::string_view("frmModel");
                                    }) == std::size(models),
              "each option of a model has a row in base/offered.h");
constexpr Option typeOptions[] = {{"optPad", choice::pad}, {"optDepad", choice::depad}};
constexpr Option unitOptions[] = {{"optUSUnits", choice::us}, {"optMetricUnits", choice::metric}};

/// The choice of the selected option; "" when none is.
const char* selected(const Controls<setupFormRows>& controls, std::span<const Option> options)
{
    const auto found = std::ranges::find_if(
        options, [&](const Option& row) { return controls.get<QRadioButton>(row.name).isChecked(); });
    return found == options.end() ? "" : found->choice;
}

/// Only what is offered can be chosen: the data file has no table for other valves. Where the selected option is not
/// offered, the first one that is takes its place.
void offerOnly(const Controls<setupFormRows>& controls, std::span<const Option> options,
               const std::function<bool(const char*)>& isOffered)
{
    const auto button = [&](const Option& row) -> QRadioButton& { return controls.get<QRadioButton>(row.name); };
    for (const Option& row : options)
        button(row).setEnabled(isOffered(row.choice));
    if (std::ranges::any_of(options,
                            [&](const Option& row) { return button(row).isChecked() && !button(row).isEnabled(); }))
        button(*std::ranges::find_if(options, [&](const Option& row) {
            return button(row).isEnabled();
        })).setChecked(true);
}

} // namespace

SetupForm::SetupForm(SizingState& state, const LocaleInfo& locale)
    : controls_(*this, FrameOrigin::frame, setupFormWidth, setupFormHeight), state_(state)
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
    connectHandlers();
    Form_Load(locale);
    controls_.get<QRadioButton>("optSeries61").setFocus();
}

void SetupForm::connectHandlers()
{
    const auto on = [this](SetupControl option, auto click) {
        connect(&controls_.get<QRadioButton>(option), &QRadioButton::toggled, this, [this, click](bool isSelected) {
            if (isSelected)
                std::invoke(click, this);
        });
    };
    for (const Option& model : modelOptions)
        on(model.name, [&model](SetupForm* form) { form->chooseModel(model.choice); });
    on("optPad", &SetupForm::optPad_Click);
    on("optDepad", &SetupForm::optDepad_Click);
    on("optDD", &SetupForm::optDD_Click);
    on("optAPI2000", &SetupForm::optAPI2000_Click);
    on("optUSUnits", &SetupForm::optUSUnits_Click);
    on("optMetricUnits", &SetupForm::optMetricUnits_Click);
    onClick(controls_.get<QPushButton>("cmdContinue"), *this, [this] { cmdContinue_Click(); });
}

void SetupForm::Form_Load(const LocaleInfo& locale)
{
    resetState(locale);
    for (const SetupControl name :
         std::initializer_list<SetupControl>{"optUSUnits", "optSeries61", "optPad", "optAPI2000"})
        controls_.get<QRadioButton>(name).setChecked(true);
    for (std::size_t field = 0; field < customerBoxes.size(); ++field)
        controls_.get<QLineEdit>(customerBoxes[field])
            .setText(QString::fromStdString(state_.*customerFields[field].text));
}

void SetupForm::resetState(const LocaleInfo& locale)
{
    state_.InputError = false;
    state_.SizingError = false;
    modDecSep(state_, locale);
    state_.ValidChars = "1234567890" + state_.DecSep;
    const SizingState defaults;
    state_.UnitSystem = defaults.UnitSystem;
    state_.ValveType = defaults.ValveType;
    state_.SizingMethod = defaults.SizingMethod;
    state_.SizingCase = defaults.SizingCase;
    state_.ValveModel = defaults.ValveModel;
}

void SetupForm::chooseModel(const char* valveModel)
{
    state_.ValveModel = valveModel;
    offerOnly(controls_, typeOptions, [&](const char* valveType) { return isOffered(valveModel, valveType); });
    fillPressureAndFlow();
}

void SetupForm::chooseType(const char* valveType)
{
    state_.ValveType = valveType;
    fillPressureAndFlow();
}

void SetupForm::chooseUnits(const char* unitSystem)
{
    state_.UnitSystem = unitSystem;
    fillPressureAndFlow();
    if (const UnitSystem* const units = unitsOf(unitSystem)) {
        controls_.get<ListBox>("lstTemp").fill({units->temperature});
        controls_.get<ListBox>("lstVolume").fill({units->volume});
    }
}

void SetupForm::fillPressureAndFlow()
{
    const std::string_view valveModel = selected(controls_, modelOptions);
    const std::string_view valveType = selected(controls_, typeOptions);
    const auto pressUnits = [&](std::string_view unitSystem) {
        QStringList names;
        for (const Offer& offer : offers)
            if (valveModel == offer.valveModel && valveType == offer.valveType && unitSystem == offer.unitSystem)
                names.append(QString::fromUtf8(offer.pressUnits));
        return names;
    };
    if (!valveModel.empty() && !valveType.empty())
        offerOnly(controls_, unitOptions, [&](const char* unitSystem) { return !pressUnits(unitSystem).isEmpty(); });
    const std::string_view unitSystem = selected(controls_, unitOptions);
    const QStringList pressure = pressUnits(unitSystem);
    QStringList flow;
    if (const UnitSystem* const units = unitsOf(unitSystem); units != nullptr && !pressure.isEmpty())
        flow.append(QString::fromUtf8(units->flow));
    controls_.get<ListBox>("lstPressure").fill(pressure);
    controls_.get<ListBox>("lstFlow").fill(flow);
}

void SetupForm::cmdContinue_Click()
{
    const std::string pressUnits = controls_.get<ListBox>("lstPressure").currentItem()->text().toStdString();
    if (const Offer* const offer = findOffer(selected(controls_, modelOptions), state_.ValveType, pressUnits))
        storeOffer(state_, *offer);
    for (std::size_t field = 0; field < customerBoxes.size(); ++field)
        state_.*customerFields[field].text = controls_.get<QLineEdit>(customerBoxes[field]).text().toStdString();
    emit continued();
}
