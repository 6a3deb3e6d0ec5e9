#include "app/verification_dialog.h"

#include "app/announcer.h"
#include "app/outcome.h"
#include "lists/verification.h"
#include "platform/about.h"
#include "platform/user_locale.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

void showVerification(QWidget& form, const std::string& dataFile)
{
    const std::string directory = QCoreApplication::applicationDirPath().toStdString() + "/verification";
    const Verification verification =
        verifyProgram({directory, dataFile, systemName(), userLocaleName(), hasDecimalComma(), userToday()});

    // Goes with the window, and no event loop waits for it.
    auto* const dialog = new QDialog(form.window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(QStringLiteral("Verification"));
    auto* const report = new QPlainTextEdit(QString::fromStdString(verification.report), dialog);
    report->setReadOnly(true);
    report->setTabChangesFocus(true);
    report->setLineWrapMode(QPlainTextEdit::NoWrap);
    report->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    report->setAccessibleName(QStringLiteral("Report"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, dialog);
    auto* const copy = buttons->addButton(QStringLiteral("&Copy"), QDialogButtonBox::ActionRole);
    new Announcer(*dialog);
    QObject::connect(copy, &QPushButton::clicked, report, [report, copy] {
        QGuiApplication::clipboard()->setText(report->toPlainText());
        tellOutcome(*copy, QStringLiteral("Report copied."));
    });
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::close);
    auto* const rows = new QVBoxLayout(dialog);
    rows->addWidget(report);
    rows->addWidget(buttons);
    dialog->resize(QSize(760, 420).boundedTo(form.screen()->availableSize()));
    dialog->open();
}
