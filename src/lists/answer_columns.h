#pragma once

#include "lists/duty_columns.h"
#include "lists/sized_duty.h"

#include <span>
#include <string>
#include <string_view>

/// A choice, the gas or its gravity. A row may leave it out; then the answer fills in what the row was sized with.
struct FilledColumn
{
    std::size_t column; ///< in `listColumns`
    std::string_view (*text)(const FreshSizing& sizing);
};

/// All of them, in the order of `listColumns`.
std::span<const FilledColumn> filledColumns();

/// What the answer to one row is made of.
struct AnswerParts
{
    const SizedDuty& duty;
    const std::string& filledIn; ///< by `addFilledIn`
    const std::string& tables;   ///< their label
};

/// A column of the results. In a list that is an earlier answer, its fields are made anew.
struct AnswerColumn
{
    const char* name;
    std::string (*text)(const AnswerParts& parts);
    std::optional<Box> unitOf; ///< the column says the unit of this box; left out when the header says it
};

/// All of them, in their order.
std::span<const AnswerColumn> answerColumns();

inline constexpr const char* filledInName = "Filled In";
inline constexpr const char* commentsName = "Comments";

/// Adds the name and the text of one field that was filled in. `betweenParts` separates two fields.
void addFilledIn(std::string& all, std::size_t column, std::string_view text);
inline constexpr std::string_view betweenParts = " | ";
