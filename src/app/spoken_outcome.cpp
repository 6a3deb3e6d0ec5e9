#include "app/spoken_outcome.h"

#include <QApplication>
#include <QWidget>

#include <utility>

SpokenOutcome::SpokenOutcome()
{
    connect(qApp, &QApplication::focusChanged, this, [this](const QWidget* before) {
        if (before == control_)
            forget();
    });
}

void SpokenOutcome::tell(QWidget& control, const QString& outcome)
{
    forget();
    if (outcome.isEmpty())
        return;
    control_ = &control;
    usual_ = control.accessibleDescription();
    control.setAccessibleDescription(usual_.isEmpty() ? outcome : outcome + QStringLiteral(" ") + usual_);
}

void SpokenOutcome::forget()
{
    if (QWidget* const control = std::exchange(control_, nullptr))
        control->setAccessibleDescription(usual_);
}
