#pragma once

struct SizingContext;

/// Steps the Cv up once, to the next of the valve type's series, when the chosen valve's capacity does not exceed the
/// total flow, and looks capacity and body size up again. Never sets `SizingError`: the driver goes on in any case, and
/// a valve that is still too small is reported by its utilisation. A refusal written here into `lblComments` stands
/// only until then: the capacity is still exceeded, and the driver's notice replaces it.
void modCheckValveData(SizingContext& sizing);
