#pragma once

#include <QListWidget>

/// A list of units of which one is always selected. Without the focus its selection is grey: of several lists, the user
/// sees which one the arrow keys go to.
class ListBox : public QListWidget
{
    Q_OBJECT

public:
    explicit ListBox(QWidget* parent);

    /// Replaces the entries and selects the first.
    void fill(const QStringList& entries);

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void showFocus(bool hasIt);
    void tellEntry();

    QRect stated_; ///< the place that the form gives it
};
