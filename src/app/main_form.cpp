#include "app/main_form.h"

#include "app/announcer.h"
#include "app/box_help.h"
#include "app/bubble.h"
#include "app/gas_box.h"
#include "app/main_form_facts.h"
#include "app/numeric_box.h"
#include "app/outcome.h"
#include "app/sizing_state.h"
#include "base/gases.h"
#include "base/number_text.h"
#include "base/setup_choices.h"
#include "capacity/capacity_store.h"
#include "engine/sizing_driver.h"

#include <QGroupBox>
#include <QPushButton>

#include <iostream>
#include <utility>

namespace
{

/// What the engine calls by number, in that order.
constexpr auto boxes = rowsNamed<MainControl, boxNames>();
constexpr auto labels = rowsNamed<MainControl, labelNames>();

/// Tooltips of the buttons.
constexpr struct
{
    MainControl button;
    const char* help;
} buttonHelps[] = {
    {"cmdCalcFlowRate", "Works out the flows and selects the valve (Alt+S)."},
    {"cmdPrint", "Prints the summary of the last sizing (Alt+T). Ctrl+S saves it as a PDF, Ctrl+Shift+C copies the "
                 "results, F1 opens the guide."},
    {"cmdClear", "Empties entries and results (Alt+C); the gas and its specific gravity stay."},
    {"cmdNewCalc", "Goes back to the setup screen (Alt+N). The customer information stays, the choices do not."},
    {"cmdExit", "Ends the program (Alt+X)."},
};

MainControl controlOf(Box box)
{
    return boxes[static_cast<std::size_t>(box)];
}

MainControl controlOf(Label label)
{
    return labels[static_cast<std::size_t>(label)];
}

void paintText(QLabel& label, const QColor& colour)
{
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, colour);
    label.setPalette(palette);
}

} // namespace

MainForm::MainForm(SizingState& state, MessageBox& messageBox, const NumberText& numbers, CapacityStore& store)
    : controls_(*this, FrameOrigin::form, mainFormWidth, mainFormHeight), sizing_{state, *this, messageBox, numbers,
                                                                                  store},
      gas_(controls_.get<GasBox>("cmbBlanketingGas")), announcer_(*new Announcer(*this))
{
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("Halvor-ORM Blanketing Valve Sizing Application - Version " SIZING_VERSION));
    paintLightGrey(*this);
    paintText(controls_.get<QLabel>("lblComments"), QColor(192, 64, 0)); // dark orange
    for (const std::span<const MainControl> names :
         {std::span<const MainControl>(flowRow), {capacityRow}, {bodySizeRow}})
        for (rows_.emplace_back(); const MainControl name : names)
            rows_.back().push_back(&controls_.get<QLabel>(name));
    connectHandlers();
    load();
    describeControls();
    controls_.get<NumericBox>("txtPumpRate").setFocus();
}

void MainForm::describeControls()
{
    describeValues(controls_);
    for (std::size_t box = 0; box < boxes.size(); ++box)
        controls_.get<QWidget>(boxes[box]).setToolTip(helpOf(static_cast<Box>(box), sizing_.state, sizing_.numbers));
    for (const auto& [button, help] : buttonHelps)
        controls_.get<QPushButton>(button).setToolTip(QString::fromLatin1(help));
}

void MainForm::connectHandlers()
{
    for (NumericBox* const box : findChildren<NumericBox*>()) {
        box->setFilter(sizing_.state);
        const bool keepsPointNote = box == &controls_.get<NumericBox>("txtTankVolume");
        connect(box, &QLineEdit::textChanged, this, [this, keepsPointNote] { emptyResultLabels(keepsPointNote); });
    }
    connect(&controls_.get<NumericBox>("txtSpecGrav"), &QLineEdit::textChanged, this, &MainForm::nameGas);
    connect(&gas_, &QComboBox::editTextChanged, this, &MainForm::cmbBlanketingGas_Change);
    connect(&gas_, &QComboBox::activated, this, &MainForm::cmbBlanketingGas_Click);

    const auto on = [this](MainControl name, auto handler) {
        onClick(controls_.get<QPushButton>(name), *this, handler);
    };
    on("cmdCalcFlowRate", [this] { selectValve(); });
    on("cmdPrint", [this] { emit printRequested(); });
    on("cmdClear", [this] { cmdClear_Click(); });
    on("cmdNewCalc", [this] { cmdNewCalc_Click(); });
    on("cmdExit", [this] { cmdExit_Click(); });
}

void MainForm::cmbBlanketingGas_Click()
{
    const std::string picked = text(Box::cmbBlanketingGas);
    for (const Gas& gas : gases)
        if (picked == gas.name)
            setText("txtSpecGrav", sizing_.numbers.general(gas.specGrav));
}

void MainForm::cmbBlanketingGas_Change()
{
    emptyResultLabels(false);
}

void MainForm::cmdClear_Click()
{
    modClearData();
    announcer_.say(QStringLiteral("Entries and results are cleared."));
}

void MainForm::cmdNewCalc_Click()
{
    emit newCalcRequested();
}

void MainForm::cmdExit_Click()
{
    emit exitRequested();
}

void MainForm::nameGas()
{
    const double specGrav = sizing_.numbers.leading(text(Box::txtSpecGrav));
    gas_.setGas(QString::fromUtf8(gasOf(specGrav)));
}

void MainForm::emptyResultLabels(bool keepPointNote)
{
    for (const Label label : allLabels)
        if (label != Label::lblSGGas2 && (label != Label::lblHFPLFP || !keepPointNote))
            setCaption(label, "");
}

std::string MainForm::text(Box box) const
{
    if (box == Box::cmbBlanketingGas)
        return gas_.currentText().toStdString();
    return controls_.get<QLineEdit>(controlOf(box)).text().toStdString();
}

std::string MainForm::caption(Label label) const
{
    return controls_.get<QLabel>(controlOf(label)).text().toStdString();
}

void MainForm::setCaption(Label label, const std::string& text)
{
    setLabelCaption(controlOf(label), text);
    if (label == Label::lblComments) // the reason of an unreadable file stands there as long as its comment
        controls_.get<QLabel>(controlOf(label)).setToolTip({});
}

void MainForm::refusedAt(Box box)
{
    refused_ = &controls_.get<NumericBox>(controlOf(box)); // when the click is over
}

void MainForm::selectValve()
{
    refused_ = nullptr;
    gas_.hidePopup(); // a screen reader can press the button behind the list, which would take the next keys
    cmdCalcFlowRate_Click(sizing_);
    if (refused_ != nullptr)
        refused_->enter();
    const bool isNoNumber =
        refused_ != nullptr && !refused_->text().isEmpty() && !sizing_.numbers.parse(refused_->text().toStdString());
    if (!isNoNumber) // about such an entry the comments say nothing
        tellOutcome();
    if (const std::string reason = sizing_.store.trouble(); !reason.empty()) {
        std::cerr << reason << std::endl;
        auto& comments = controls_.get<QLabel>("lblComments");
        comments.setToolTip(QString::fromStdString(reason));
        showBubble(comments, comments.toolTip());
    }
    if (refused_ != nullptr) // last: both may not fit
        scrollIntoView(*refused_);
    if (isNoNumber)
        ::tellOutcome(*refused_, helpOfNumbers(sizing_.state, sizing_.numbers) + refused_->toolTip());
}

void MainForm::tellOutcome()
{
    announcer_.say(outcome());
    if (hasValve()) // where not all of them fit, the last one counts
        for (const MainControl result : {MainControl("lblPercentValveCapacity"), MainControl("lblCVlbl")})
            scrollIntoView(controls_.get<QWidget>(result));
    if (!caption(Label::lblComments).empty())
        scrollIntoView(controls_.get<QWidget>("frmComments"));
}

void MainForm::tellPrinted(const QString& printer)
{
    ::tellOutcome(controls_.get<QPushButton>("cmdPrint"), QStringLiteral("Sent to %1.").arg(printer));
}

QString MainForm::resultsText() const
{
    return ::resultsText(controls_, sizing_.state);
}

QString MainForm::outcome() const
{
    const auto spoken = [this](MainControl control) { return controls_.get<QLabel>(control).text(); };
    const QString comments = spoken("lblComments");
    const std::string reason = sizing_.store.trouble();
    const QString tables = reason.empty() ? QString() : QStringLiteral(" %1.").arg(QString::fromStdString(reason));
    if (!hasValve() || !sizing_.store.whyUnreadable().empty()) // older figures, perhaps
        return comments + tables;
    return QStringLiteral("Cv %1, body size %2, capacity %3 %4, %5 % utilized. %6%7")
        .arg(spoken("lblCV"), spoken("lblValveBodySize"), spoken("lblMaxValveCapacity"),
             QString::fromStdString(sizing_.state.FlowUnits), spoken("lblPercentValveCapacity"), comments, tables);
}

void MainForm::modClearData()
{
    for (const Box box : clearedBoxes) // as by hand, so that a box can undo it
        controls_.get<QLineEdit>(controlOf(box)).clear();
    controls_.get<QLineEdit>("txtTankVolume").selectAll();
    controls_.get<QLineEdit>("txtTankVolume").insert(QStringLiteral("0"));
    empty(allLabels);
}

void MainForm::setPrintEnabled(bool enabled)
{
    auto& button = controls_.get<QPushButton>("cmdPrint");
    if (!enabled && focusWidget() == &button) // the next button would be the one that clears all entries
        controls_.get<QPushButton>("cmdCalcFlowRate").setFocus();
    button.setEnabled(enabled);
}

void MainForm::setLabelCaption(MainControl name, const std::string& text)
{
    auto& label = controls_.get<QLabel>(name);
    ::setLabelCaption(label, QString::fromStdString(text));
    // Without any name Qt would have the title of the label's frame read out.
    label.setAccessibleName(text.empty() ? QStringLiteral(" ") : QString());
    const int besideComments = controls_.get<QWidget>("frmComments").x() - 4;
    for (const std::vector<QLabel*>& row : rows_)
        keepApart(row, row.front()->parentWidget() == this ? besideComments : row.front()->parentWidget()->width() - 4);
}

void MainForm::setText(MainControl box, const std::string& entry)
{
    controls_.get<QLineEdit>(box).setText(QString::fromStdString(entry));
}

void MainForm::hideUnasked()
{
    const std::string sizingCase = sizingCaseOf(sizing_.state);
    for (std::size_t box = 0; box < boxes.size(); ++box)
        if (!asksFor(sizingCase, static_cast<Box>(box)))
            hideFact(controls_, boxes[box]);
}
