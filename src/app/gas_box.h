#pragma once

#include <QComboBox>

/// The gas box: a list that also takes any typed name. It never completes or picks an entry by itself while the user
/// types, adds nothing to its list, and turns with the wheel only while it has the focus.
class GasBox : public QComboBox
{
    Q_OBJECT

public:
    explicit GasBox(QWidget* parent = nullptr);

    /// Sets the shown text, and with it the entry that the arrow keys start from.
    void setGas(const QString& name);

    /// Fills the list without touching the shown text.
    void fill(const QStringList& names);

protected:
    void wheelEvent(QWheelEvent* event) override;
};
