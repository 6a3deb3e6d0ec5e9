#include "app/screens.h"

#include "app/box_accessible.h"
#include "app/form_layout.h"
#include "app/key_repeat.h"
#include "app/main_form.h"
#include "app/setup_form.h"
#include "report/print_command.h"

#include <QApplication>
#include <QDate>
#include <QLocale>
#include <QScreen>
#include <QScrollArea>

namespace
{

/// The form as a window of its own; on a screen too small for it, a window that scrolls it, so that every control can
/// be reached.
QWidget* windowAround(QWidget* form)
{
    const QRect room = form->screen()->availableGeometry();
    if (form->width() <= room.width() && form->height() <= room.height())
        return form;
    QWidget* const focus = form->focusWidget();
    auto* const window = new QScrollArea;
    window->setFocusPolicy(Qt::NoFocus); // the form's controls alone are tab stops
    window->setWindowTitle(form->windowTitle());
    window->setWidget(form);
    window->resize(form->size().boundedTo(room.size())); // where no window manager maximizes it
    window->setWindowState(Qt::WindowMaximized);         // with its title bar on the screen
    focus->setFocus();                                   // lost with the form's move into the scrolling window
    return window;
}

} // namespace

Screens::Screens(const LocaleInfo& locale, MessageBox& messageBox, Printers& printers, std::string capacityFile)
    : locale_(locale), messageBox_(messageBox), printers_(printers), store_(std::move(capacityFile), numbers_)
{
    installBoxAccessibility();
    qApp->installEventFilter(new KeyRepeatFilter(this));
    connect(qApp, &QApplication::focusChanged, this, [](QWidget*, QWidget* now) {
        if (now != nullptr)
            scrollIntoView(*now);
    });
}

Screens::~Screens()
{
    if (!form_.isNull())
        delete form_->window();
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
        mainForm->window()->close();
        QApplication::quit();
    });
    connect(mainForm, &MainForm::printRequested, this, [this, mainForm] {
        const QString today = QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat);
        cmdPrint_Click({state_, *mainForm, messageBox_, numbers_, today.toStdString()}, printers_);
    });
    replaceForm(mainForm);
}

void Screens::replaceForm(QWidget* form)
{
    QWidget* const before = form_.isNull() ? nullptr : form_->window();
    form_ = form;
    QWidget* const window = windowAround(form);
    window->show();
    window->setAttribute(Qt::WA_KeyboardFocusChange); // the focus is marked from the start, not from the first key
    if (before != nullptr) {
        before->hide();
        before->deleteLater(); // its own button may still be in its click
    }
}
