#pragma once

#include "app/sizing_state.h"

#include <string>

/// A text about the customer: where it is stored, entered and printed.
struct CustomerField
{
    const char* name; ///< in lists of duties and copied results
    std::string SizingState::*text;
    const char* box;     ///< of the setup form
    const char* summary; ///< label of the summary
    const char* help;    ///< tooltip of the box
};

/// In the order of the setup form.
inline constexpr CustomerField customerFields[] = {
    {"Customer Name", &SizingState::CustomerName, "txtCustomerName", "lblCustomerName", "Printed on the summary."},
    {"Customer Location", &SizingState::CustomerLocation, "txtCustomerLocation", "lblCustomerLocation",
     "Printed on the summary."},
    {"Tag Number", &SizingState::CustTagNo, "txtCustTagNo", "lblCustTagNo",
     "Printed on the summary; its PDF file is named by it."},
    {"Notes", &SizingState::Notes, "txtNotes", "lblNotes", "Printed on the summary."},
    {"ORM Representative", &SizingState::Representative, "txtORMRep", "lblORMRep", "Printed on the summary."},
};
