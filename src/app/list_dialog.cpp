#include "app/list_dialog.h"

#include "app/announcer.h"
#include "app/form_window.h"
#include "base/path_text.h"
#include "platform/pdf_summary.h"
#include "platform/user_locale.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace
{

/// What a file dialog asks for.
struct FileQuestion
{
    const char* title;
    QFileDialog::AcceptMode accept;
    QFileDialog::FileMode mode;
    const char* filter;
};

constexpr const char* lists = "Lists (*.csv *.tsv *.txt);;All files (*)";
constexpr FileQuestion forList = {"Size a List", QFileDialog::AcceptOpen, QFileDialog::ExistingFile, lists};
constexpr FileQuestion forAnswer = {"Write the Answer to", QFileDialog::AcceptSave, QFileDialog::AnyFile, lists};
constexpr FileQuestion forSummaries = {"Write the Summaries into", QFileDialog::AcceptOpen, QFileDialog::Directory, ""};

/// Has the user name a file or directory; "" when he does not. A file that is to be written over, he is asked about.
QString ask(QWidget* parent, const FileQuestion& question, const QString& proposed)
{
    // One dialog for all: the destructor of QFileDialog writes a settings file.
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    static auto* const dialog =
        new QFileDialog(nullptr, {}, QDir(documents).exists() ? documents : QDir::homePath(), QString());
    dialog->setWindowTitle(QString::fromLatin1(question.title));
    dialog->setAcceptMode(question.accept);
    dialog->setFileMode(question.mode);
    dialog->setNameFilter(QString::fromLatin1(question.filter));
    dialog->setDefaultSuffix(question.mode == QFileDialog::AnyFile ? QStringLiteral("csv") : QString());
    if (!proposed.isEmpty())
        dialog->selectFile(proposed);
    return askIn(*dialog, parent);
}

/// A name that no file has, made of that of `file`: "tanks_sized.csv", "tanks_sized (2).csv".
QString freeName(const QString& file, const QString& behind = {})
{
    const QFileInfo named(file);
    const QString base = named.dir().filePath(named.completeBaseName() + behind);
    const QString ending = named.suffix().isEmpty() ? QString() : u'.' + named.suffix();
    QString name = base + ending;
    for (int number = 2; QFileInfo::exists(name); ++number)
        name = QStringLiteral("%1 (%2)%3").arg(base).arg(number).arg(ending);
    return name;
}

/// The name that is proposed for the answer to a list.
QString answerTo(const QString& list)
{
    return freeName(list, QStringLiteral("_sized"));
}

std::filesystem::path pathIn(const QLineEdit& box)
{
    return pathOf(QDir::fromNativeSeparators(box.text()).toStdString());
}

} // namespace

ListDialog::ListDialog(QWidget* parent, const QString& list, std::string dataFile)
    : QDialog(parent), dataFile_(std::move(dataFile)), entries_(*new QWidget(this)),
      wantsSummaries_(*new QCheckBox(QStringLiteral("S&ummaries as PDF files in:"))), progress_(*new QProgressBar),
      status_(*new QLabel), size_(*new QPushButton(QStringLiteral("&Size"))),
      close_(*new QPushButton(QStringLiteral("Close"))), announcer_(*new Announcer(*this))
{
    setWindowTitle(QStringLiteral("Size a List"));
    setAttribute(Qt::WA_DeleteOnClose);

    auto* const rows = new QGridLayout(&entries_);
    rows->setContentsMargins({});
    auto* const listCaption = new QLabel(QStringLiteral("&List:"));
    auto* const answerCaption = new QLabel(QStringLiteral("&Answer:"));
    list_ = addFile(*rows, *listCaption, "List", &ListDialog::chooseList);
    answer_ = addFile(*rows, *answerCaption, "Answer", &ListDialog::chooseAnswer);
    summaries_ = addFile(*rows, wantsSummaries_, "Directory of Summaries", &ListDialog::chooseSummaries);
    listCaption->setBuddy(list_);
    answerCaption->setBuddy(answer_);

    progress_.setAccessibleName(QStringLiteral("Progress"));
    progress_.setFocusPolicy(Qt::TabFocus); // stands in for the controls that are off meanwhile: Enter stops nothing
    progress_.setRange(0, 1);
    progress_.reset();
    status_.setTextFormat(Qt::PlainText);
    status_.setWordWrap(true);
    status_.setAlignment(Qt::AlignLeft | Qt::AlignTop);
    status_.setMinimumHeight(4 * status_.fontMetrics().lineSpacing());
    size_.setDefault(true);

    auto* const buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(&size_);
    buttons->addWidget(&close_);
    auto* const all = new QVBoxLayout(this);
    all->addWidget(&entries_);
    all->addWidget(&progress_);
    all->addWidget(&status_, 1);
    all->addLayout(buttons);

    connect(&size_, &QPushButton::clicked, this, &ListDialog::start);
    connect(&close_, &QPushButton::clicked, this, &ListDialog::reject);
    connect(&slices_, &QTimer::timeout, this, &ListDialog::slice);
    connect(&wantsSummaries_, &QCheckBox::toggled, this, &ListDialog::allowAgain);
    setList(list);
    size_.setFocus();
}

QLineEdit* ListDialog::addFile(QGridLayout& rows, QWidget& caption, const char* what, void (ListDialog::*choose)())
{
    constexpr int wide = 280; // pixels: the dialog fits a screen of 640
    auto* const box = new QLineEdit;
    box->setReadOnly(true);
    box->setMinimumWidth(wide);
    box->setAccessibleName(QString::fromLatin1(what));
    auto* const button = new QPushButton(QStringLiteral("Choose..."));
    button->setAccessibleName(QStringLiteral("Choose ") + QString::fromLatin1(what));
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, choose);
    const int row = rows.rowCount();
    rows.addWidget(&caption, row, 0);
    rows.addWidget(box, row, 1);
    rows.addWidget(button, row, 2);
    return box;
}

void ListDialog::setList(const QString& list)
{
    const QFileInfo file(list);
    list_->setText(QDir::toNativeSeparators(file.absoluteFilePath()));
    answer_->setText(QDir::toNativeSeparators(answerTo(file.absoluteFilePath())));
    summaries_->setText(
        QDir::toNativeSeparators(file.absoluteDir().filePath(file.completeBaseName() + QStringLiteral("_summaries"))));
    replacesAnswer_ = false;
    size_.setEnabled(true);
}

void ListDialog::chooseList()
{
    if (const QString file = ask(this, forList, list_->text()); !file.isEmpty())
        setList(file);
}

void ListDialog::chooseAnswer()
{
    const QString file = ask(this, forAnswer, answer_->text());
    if (file.isEmpty())
        return;
    answer_->setText(QDir::toNativeSeparators(file));
    replacesAnswer_ = QFileInfo::exists(file);
    size_.setEnabled(true);
}

void ListDialog::chooseSummaries()
{
    const QString directory = ask(this, forSummaries, {});
    if (directory.isEmpty())
        return;
    summaries_->setText(QDir::toNativeSeparators(directory));
    wantsSummaries_.setChecked(true);
    allowAgain();
}

/// Another run is wanted. The answer of the run before stays: the next one gets a free name beside it, unless the user
/// has agreed to replace it.
void ListDialog::allowAgain()
{
    if (!replacesAnswer_)
        answer_->setText(QDir::toNativeSeparators(freeName(QDir::fromNativeSeparators(answer_->text()))));
    size_.setEnabled(true);
}

void ListDialog::start()
{
    ListFiles files{pathIn(*list_), pathIn(*answer_), replacesAnswer_, {}};
    if (wantsSummaries_.isChecked())
        files.summaries = pathIn(*summaries_);
    try {
        run_.emplace(files, dataFile_, summaryPdf, userToday());
    } catch (const std::exception& failure) {
        end(std::string("Nothing is sized: ") + failure.what() + '.', false);
        return;
    }
    progress_.setRange(0, std::max(static_cast<int>(run_->rowCount()), 1)); // of 0 it would never end
    progress_.setFocus();
    entries_.setEnabled(false);
    size_.setEnabled(false);
    close_.setText(QStringLiteral("Cancel"));
    since_.start();
    slices_.start();
}

void ListDialog::slice()
{
    constexpr qint64 most = 50; // milliseconds that nobody notices
    QElapsedTimer time;
    time.start();
    try {
        while (time.elapsed() < most)
            if (!run_->next()) {
                end(run_->outcome(), true);
                return;
            }
        showProgress();
    } catch (const std::exception& failure) {
        end("Stopped after " + std::to_string(run_->done()) + " rows, no answer is kept: " + failure.what() + '.',
            false);
    }
}

void ListDialog::showProgress()
{
    const auto done = static_cast<double>(run_->done());
    const double left =
        static_cast<double>(since_.elapsed()) / 1000 / done * (static_cast<double>(run_->rowCount()) - done);
    const auto seconds = static_cast<int>(left);
    progress_.setValue(static_cast<int>(run_->done()));
    status_.setText(QStringLiteral("%1 of %2 rows, %3 not sized, %4:%5 left")
                        .arg(run_->done())
                        .arg(run_->rowCount())
                        .arg(run_->notSized())
                        .arg(seconds / 60)
                        .arg(seconds % 60, 2, 10, QLatin1Char('0')));
}

/// Says what the run came to. One that is done is not started again by the same key: its answer is there.
void ListDialog::end(const std::string& outcome, bool isDone)
{
    slices_.stop();
    run_.reset();
    entries_.setEnabled(true);
    size_.setEnabled(!isDone);
    close_.setText(QStringLiteral("Close"));
    (isDone ? close_ : size_).setFocus();
    if (isDone)
        progress_.setValue(progress_.maximum());
    else
        progress_.reset();
    status_.setText(QString::fromStdString(outcome));
    resize(width(), std::max(height(), layout()->totalHeightForWidth(width()))); // for all that is told
    announcer_.say(status_.text());
}

void ListDialog::reject()
{
    if (run_)
        end(run_->outcomeOfCancel(), false);
    else
        QDialog::reject();
}

void sizeList(QWidget& form, const std::string& dataFile)
{
    const QPointer<QWidget> alive = &form;
    const QString list = ask(form.window(), forList, {});
    if (!list.isEmpty() && alive != nullptr)
        (new ListDialog(form.window(), list, dataFile))->open();
}
