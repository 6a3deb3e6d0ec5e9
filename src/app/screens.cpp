#include "app/screens.h"

#include "app/announcer.h"
#include "app/box_accessible.h"
#include "app/bubble.h"
#include "app/form_layout.h"
#include "app/form_window.h"
#include "app/key_repeat.h"
#include "app/list_dialog.h"
#include "app/main_form.h"
#include "app/menu_bell.h"
#include "app/outcome.h"
#include "app/setup_form.h"
#include "app/verification_dialog.h"
#include "base/locale_info.h"
#include "base/message_box.h"
#include "capacity/tables_label.h"
#include "files/replacement_file.h"
#include "files/system.h"
#include "lists/copied_rows.h"
#include "platform/about.h"
#include "platform/pdf_summary.h"
#include "platform/user_locale.h"
#include "report/file_name.h"
#include "report/print_command.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <QStandardPaths>
#include <QTimer>

#include <stdexcept>

namespace
{

/// Has the user name the file; "" when he does not.
QString askForPdf(QWidget& form, const std::string& tagNumber)
{
    // One dialog for all saves: the destructor of QFileDialog writes a settings file. It also remembers the last
    // directory.
    static auto* const dialog = new QFileDialog(nullptr, QStringLiteral("Save Summary as PDF"),
                                                QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation),
                                                QStringLiteral("PDF files (*.pdf)"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setDefaultSuffix(QStringLiteral("pdf"));
    const std::string name = fileNameOf(tagNumber);
    dialog->selectFile(QString::fromStdString((name.empty() ? "Valve Sizing Summary" : name) + ".pdf"));
    return askIn(*dialog, form.window());
}

} // namespace

Screens::Screens(const LocaleInfo& locale, MessageBox& messageBox, Printers& printers, std::string capacityFile)
    : locale_(locale), messageBox_(messageBox), printers_(printers), dataFile_(std::move(capacityFile)),
      store_(dataFile_, numbers_)
{
    installBoxAccessibility();
    qApp->installEventFilter(new KeyRepeatFilter(this));
    qApp->installEventFilter(new MenuBell(this));
    qApp->installEventFilter(new BubbleFilter(this));
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
    replaceForm(*setup, addMenus(*setup, nullptr));
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
        const PrintOutcome outcome = cmdPrint_Click(sizingContext(*mainForm), userToday(), printers_);
        if (outcome.kind == PrintOutcome::nothingSized)
            mainForm->tellOutcome();
        else if (outcome.kind == PrintOutcome::printed)
            mainForm->tellPrinted(QString::fromStdString(outcome.printer));
    });
    replaceForm(*mainForm, addMenus(*mainForm, mainForm));
}

SizingContext Screens::sizingContext(MainForm& mainForm)
{
    return {state_, mainForm, messageBox_, numbers_, store_};
}

void Screens::saveSummary(MainForm& mainForm)
{
    try {
        const std::optional<SummaryForm> page = summaryOfSizing(sizingContext(mainForm), userToday());
        if (!page) {
            mainForm.tellOutcome();
            return;
        }
        if (const std::string reason = store_.trouble(); !reason.empty())
            throw std::runtime_error(reason); // the figures shown are of an earlier click, or lack a table
        const QString file = askForPdf(mainForm, state_.CustTagNo);
        if (file.isEmpty())
            return;
        ReplacementFile pdf(pathOf(file.toStdString()), ordinaryMode());
        pdf.write(summaryPdf(*page, tablesLabel(store_)));
        pdf.putInPlace();
        tellOutcome(*mainForm.focusWidget(), QStringLiteral("Saved as %1.").arg(QFileInfo(file).fileName()));
    } catch (const std::exception& reason) {
        messageBox_.show(std::string("The summary is not saved: ") + reason.what());
    }
}

/// The rows on the clipboard give way to what is to be pasted beside them.
void Screens::sizeCopied(QWidget& form)
{
    QClipboard& clipboard = *QGuiApplication::clipboard();
    const char decimalMark = localeText(locale_, LocaleItem::numberDecimal) == "," ? ',' : '.';
    const CopiedRows rows = sizeCopiedRows(clipboard.text().toStdString(), dataFile_, decimalMark);
    if (!rows.added.empty())
        clipboard.setText(QString::fromStdString(rows.added));
    tellOutcome(*form.focusWidget(), QString::fromStdString(rows.outcome));
}

QMenuBar& Screens::addMenus(QWidget& form, MainForm* mainForm)
{
    QMenuBar& bar = *createMenuBar();
    QMenu& file = *bar.addMenu(QStringLiteral("Fil&e")); // E and H are no access keys of either form
    QMenu& help = *bar.addMenu(QStringLiteral("&Help"));
    const auto add = [&form](QMenu& menu, const char* text, const QKeySequence& keys, auto act) {
        auto* const action = new QAction(QString::fromLatin1(text), &form);
        action->setShortcut(keys);
        action->setShortcutVisibleInContextMenu(true);
        connect(action, &QAction::triggered, &form, [act] {
            if (QApplication::activeModalWidget() == nullptr) // a screen reader can press behind a dialog
                act();
        });
        form.addAction(action); // of the context menu, too; its key works everywhere in the form
        menu.addAction(action);
        return action;
    };
    add(help, "User &Guide", Qt::Key_F1, [this] { openUserGuide(messageBox_); });
    QAction* const ofResults[] = {
        add(file, "&Save Summary as PDF...", Qt::CTRL | Qt::Key_S, [this, mainForm] { saveSummary(*mainForm); }),
        add(file, "&Copy Results", Qt::CTRL | Qt::SHIFT | Qt::Key_C, [mainForm] {
            QGuiApplication::clipboard()->setText(mainForm->resultsText());
            tellOutcome(*mainForm->focusWidget(), mainForm->hasValve()
                                                      ? QStringLiteral("Results copied.")
                                                      : QStringLiteral("Entries copied; no valve is selected."));
        })};
    for (QAction* const action : ofResults)
        action->setEnabled(mainForm != nullptr);
    add(file, "Size Copied &Rows", {}, [this, &form] { sizeCopied(form); });
    add(file, "Size a &List...", {}, [this, &form] { sizeList(form, dataFile_); });
    add(help, "&Verify...", {}, [this, &form] { showVerification(form, dataFile_); });
    add(help, "&About", {}, [this] { showAbout(messageBox_, dataFile_); });
    addContextMenu(form);
    addBoxHelp(form);
    return bar;
}

/// By right-click and by the menu key, on a button or beside the controls.
void Screens::addContextMenu(QWidget& form)
{
    // Not the toolkit's own menu of the actions: it lives on the stack, and a screen reader may let the form be deleted
    // under it.
    form.setContextMenuPolicy(Qt::CustomContextMenu);
    connect(&form, &QWidget::customContextMenuRequested, &form, [&form](const QPoint& at) {
        auto* const menu = new QMenu(&form);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->addActions(form.actions());
        menu->popup(form.mapToGlobal(at));
        if (QGuiApplication::mouseButtons() == Qt::NoButton) // by a key: screen readers read the first entry
            menu->setActiveAction(form.actions().first());
    });
    // The key that many keyboards have instead of the menu key. Windows's own answer to it gives way to this one.
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F10, &form), &QShortcut::activated, &form, [] {
        QWidget* const control = QApplication::focusWidget();
        if (control == nullptr)
            return;
        const QPoint at = control->inputMethodQuery(Qt::ImCursorRectangle).toRect().center();
        QContextMenuEvent asked(QContextMenuEvent::Keyboard, at, control->mapToGlobal(at));
        QApplication::sendEvent(control, &asked);
    });
}

/// What a control takes, by Shift+F1. Not the toolkit's own help of this key (QWhatsThis), which takes the next key or
/// click for itself.
void Screens::addBoxHelp(QWidget& form)
{
    auto* const announcer = form.findChild<Announcer*>();
    connect(new QShortcut(Qt::SHIFT | Qt::Key_F1, &form), &QShortcut::activated, &form, [announcer] {
        QWidget* const box = QApplication::focusWidget();
        if (box == nullptr)
            return;
        showBubble(*box, box->toolTip());
        announcer->say(box->toolTip());
    });
}

void Screens::replaceForm(QWidget& form, QMenuBar& bar)
{
    QWidget* const before = form_.isNull() ? nullptr : form_->window();
    form_ = &form;
    auto* const window = new FormWindow(form, bar);
    centreOnScreen(*window);
    window->show();
    window->setAttribute(Qt::WA_KeyboardFocusChange); // the focus is marked from the start, not from the first key
    if (!window->isMaximized()) {    // once more with its title bar, which the window manager has given it by then
        constexpr int patience = 50; // milliseconds
        QTimer::singleShot(patience, window, [window, at = window->pos()] {
            if (window->pos() == at)
                centreOnScreen(*window);
        });
    }
    if (before != nullptr) {
        before->hide();
        before->deleteLater(); // its own button may still be in its click
    }
}
