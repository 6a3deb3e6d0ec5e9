#include "app/screens.h"

#include "app/form_layout.h"
#include "app/main_form.h"
#include "app/setup_form.h"
#include "report/print_command.h"

#include <QApplication>

#include <QPushButton>
#include <utility>

Screens::Screens(const LocaleInfo& locale, MessageBox& messageBox, Printers& printers, std::string capacityFile)
    : locale_(locale), messageBox_(messageBox), printers_(printers), store_(std::move(capacityFile), numbers_)
{
}

Screens::~Screens()
{
    delete form_;
}

void Screens::showSetup()
{
    auto* const setup = new SetupForm(state_, locale_);
    // Its load has read the money separator; a changed locale takes effect here, too.
    numbers_ = userNumberText(locale_, state_.DecSep);
    connect(setup, &SetupForm::continued, this, &Screens::showMain);
    replaceForm(setup);
}

void Screens::showMain()
{
    auto* const mainForm = new MainForm(state_, messageBox_, numbers_, store_);
    connect(mainForm, &MainForm::newCalcRequested, this, &Screens::showSetup);
    connect(mainForm, &MainForm::exitRequested, qApp, [mainForm] {
        mainForm->close();
        QApplication::quit();
    });
    connect(mainForm, &MainForm::printRequested, this, [this, mainForm] {
        cmdPrint_Click(
            {state_, *mainForm, control<QPushButton>(*mainForm, "cmdPrint"), messageBox_, numbers_, printers_});
    });
    replaceForm(mainForm);
}

void Screens::replaceForm(QWidget* form)
{
    QWidget* const before = std::exchange(form_, form);
    form->show();
    if (before != nullptr) {
        before->hide();
        before->deleteLater(); // its own button may still be in its click
    }
}
