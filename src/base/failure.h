#pragma once

#include "base/message_box.h"

#include <stdexcept>
#include <string>

/// A divisor was 0.
struct DivisionByZero : std::runtime_error
{
    DivisionByZero() : std::runtime_error("division by zero") {}
};

/// A text or a stored value could not be read as the number or text wanted.
struct TypeMismatch : std::runtime_error
{
    TypeMismatch() : std::runtime_error("type mismatch") {}
};

/// Any other failure (an overflow, a missing data file, no current row): ends a routine without a message.
struct SilentFailure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// What a routine's own handler shows for the two failures that are reported.
struct FailureTexts
{
    std::string divisionByZero;
    std::string typeMismatch;
};

/// The usual pair of texts: "Error Code 11; " and "Error Code 13; " followed by the routine's name.
inline FailureTexts errorCodes(const std::string& routine)
{
    return {"Error Code 11; " + routine, "Error Code 13; " + routine};
}

/// Runs a routine's body under its own handler: a division by zero or a type mismatch shows its text and then has the
/// routine's `effects`; every other failure ends the body silently, with what it had done so far.
template <typename Body, typename Effects>
void withHandler(MessageBox& messageBox, const FailureTexts& texts, Body body, Effects effects)
{
    try {
        body();
        return;
    } catch (const DivisionByZero&) {
        messageBox.show(texts.divisionByZero);
    } catch (const TypeMismatch&) {
        messageBox.show(texts.typeMismatch);
    } catch (const std::exception&) {
        return;
    }
    effects();
}
