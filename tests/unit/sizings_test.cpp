#include "support/sizing.h"

#include <gtest/gtest.h>

#include <optional>

/// The box that a refusal is about, by its words or, where it has none, by what the case is called.
std::optional<Box> refusedBox(const Case& row)
{
    const auto has = [&](const char* column, const char* words) {
        return row[column].find(words) != std::string::npos;
    };
    if (row["Comments"].empty())
        for (const auto& [words, box] : {std::pair{"gravity no number", Box::txtSpecGrav},
                                         {"pump rate no number", Box::txtPumpRate},
                                         {"pressure no number", Box::txtPressure},
                                         {"volume no number", Box::txtTankVolume}})
            if (has("Case", words))
                return box;
    if (has("Comments", "Pressure and Pump-Rate"))
        return row["Pressure"].empty() ? Box::txtPressure : Box::txtPumpRate;
    for (const auto& [words, box] : {std::pair{"Pressure must be", Box::txtPressure},
                                     {"minimum supply pressure", Box::txtPressure},
                                     {"specific gravity", Box::txtSpecGrav},
                                     {"Pump-Rate will", Box::txtPumpRate},
                                     {" rate must", Box::txtPumpRate},
                                     {"anks larger", Box::txtTankVolume},
                                     {"Tank Volume", Box::txtTankVolume},
                                     {"Flash Point", Box::txtFlashPoint}})
        if (has("Comments", words))
            return box;
    return std::nullopt;
}

TEST(Sizings, GiveWhatTheCaseFileSays)
{
    for (const Case& row : readCases("sizings.csv")) {
        const Sizing sizing(row);
        expectOutcome(row, sizing.screen, sizing.messages);
        if (row["Capacity Utilized (%)"].empty() && row["Messages"].empty()) {
            EXPECT_EQ(sizing.screen.current, refusedBox(row)) << row.where();
        }
        EXPECT_FALSE(sizing.state.InputError || sizing.state.SizingError) << row.where();
    }
}

TEST(Offers, MessagesNameTheRangesAndRulesTheyStandFor)
{
    const NumberText numbers;
    for (const Offer& offer : offers) {
        const std::string range = " must be between " + numbers.general(offer.lowest) + " and " +
                                  numbers.general(offer.highest) + " " + offer.pressUnits + ".";
        EXPECT_TRUE(std::string(offer.message).ends_with(range)) << offer.message;
        if (offer.minimum.message != nullptr) {
            const std::string rule = " minimum supply pressure of " + numbers.general(offer.minimum.lowest) + " ";
            EXPECT_NE(std::string(offer.minimum.message).find(rule), std::string::npos) << offer.minimum.message;
            EXPECT_TRUE(std::string(offer.minimum.message).starts_with(offer.valveModel)) << offer.minimum.message;
        }
    }
}
