#pragma once

#include "lists/list_run.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>

class Announcer;
class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

/// "Size a List": names the answer and, if wanted, a directory of summaries beside a list, which can be chosen
/// otherwise, sizes the list and says what it came to. Works in slices: the windows stay alive, and Cancel ends it.
class ListDialog : public QDialog
{
    Q_OBJECT

public:
    ListDialog(QWidget* parent, const QString& list, std::string dataFile);

    /// Cancels the run that is on; else closes the dialog.
    void reject() override;

private:
    QLineEdit* addFile(class QGridLayout& rows, QWidget& caption, const char* what, void (ListDialog::*choose)());
    void setList(const QString& list);
    void chooseList();
    void chooseAnswer();
    void chooseSummaries();
    void allowAgain();

    void start();
    void slice();
    void showProgress();
    void end(const std::string& outcome, bool isDone);

    const std::string dataFile_;
    QWidget& entries_;
    QLineEdit* list_ = nullptr;
    QLineEdit* answer_ = nullptr;
    QLineEdit* summaries_ = nullptr;
    QCheckBox& wantsSummaries_;
    bool replacesAnswer_ = false; ///< the user has agreed to it
    QProgressBar& progress_;
    QLabel& status_;
    QPushButton& size_;
    QPushButton& close_;
    Announcer& announcer_;
    std::optional<ListRun> run_;
    QTimer slices_;
    QElapsedTimer since_;
};

/// Has the user choose a list and opens the dialog for it. The dialog stands before the form and goes with it.
void sizeList(QWidget& form, const std::string& dataFile);
