#pragma once

#include "base/failure.h"
#include "base/main_screen.h"
#include "base/sizing_context.h"

/// Runs a lookup under its own handler and gives its result. A division by zero or a type mismatch is shown with the
/// routine's name and empties the main form; after any failure the result is `nothing`. `SizingError` is never set.
template <typename Result, typename Lookup>
Result lookupOr(Result nothing, SizingContext& sizing, const char* routine, Lookup lookup)
{
    Result result = nothing;
    withHandler(
        sizing.messageBox, errorCodes(routine), [&] { result = lookup(); }, [&] { sizing.screen.modClearData(); });
    return result;
}
