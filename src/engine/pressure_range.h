#pragma once

struct SizingContext;

/// Refuses a pressure outside the range that the model is offered for: writes the range's message into `lblComments`
/// and sets `SizingError`. A combination of model, type and unit that is not offered passes; for a model that is built
/// as one valve type only, the type plays no part.
void modMaxMinCheck(SizingContext& sizing);
