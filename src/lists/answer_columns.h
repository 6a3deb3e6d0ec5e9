#pragma once

#include "lists/duty_columns.h"
#include "lists/sized_duty.h"

#include <span>
#include <string>
#include <string_view>

/// A choice, the gas or its gravity: a row may leave it out, and the answer fills in what it was sized for.
struct FilledColumn
{
    std::size_t column; ///< in `listColumns`
    std::string (*text)(const FreshSizing& sizing);
};

/// All of them, in the order of `listColumns`.
std::span<const FilledColumn> filledColumns();

/// What the answer to one row is made of.
struct AnswerParts
{
    const SizedDuty& duty;
    const std::string& filledIn; ///< of `filledInPart`
    const std::string& tables;   ///< their label
};

/// A column that only the answer has. A list that is an answer has them too: they are made anew.
struct AnswerColumn
{
    const char* name;
    std::string (*text)(const AnswerParts& parts);
    std::optional<Box> unitOf; ///< it says the unit of this box, which the header may say itself
};

/// All of them, in their order.
std::span<const AnswerColumn> answerColumns();

inline constexpr const char* filledInName = "Filled In";
inline constexpr const char* commentsName = "Comments";

/// What the column "Filled In" says of one field, and what stands between two of them.
std::string filledInPart(std::size_t column, std::string_view text);
inline constexpr std::string_view betweenParts = " | ";
