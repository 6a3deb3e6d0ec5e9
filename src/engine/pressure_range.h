#pragma once

struct Offer;
struct SizingContext;
struct SizingState;

/// The offer that the chosen pressure is held to; nullptr for a combination that is not offered. For a model that is
/// built as a pad valve only, the type plays no part.
const Offer* offerOf(const SizingState& state);

/// Refuses a pressure outside the range that the model is offered for: writes the range's message into `lblComments`
/// and sets `SizingError`. A combination that is not offered passes.
void modMaxMinCheck(SizingContext& sizing);
