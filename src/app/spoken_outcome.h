#pragma once

#include <QObject>
#include <QString>

class QWidget;

/// Has a screen reader say what a click has come to: as the description of the control that has the focus then, in
/// front of the control's own. Forgotten when the focus leaves the control, or when the next outcome is told.
class SpokenOutcome : public QObject
{
public:
    SpokenOutcome();

    /// An empty outcome says nothing. `control` lives as long as this.
    void tell(QWidget& control, const QString& outcome);
    void forget();

private:
    QWidget* control_ = nullptr; ///< with an outcome as its description
    QString usual_;              ///< its own description
};
