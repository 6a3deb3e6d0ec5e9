#include "support/sizing.h"

#include <gtest/gtest.h>

TEST(Sizings, GiveWhatTheCaseFileSays)
{
    for (const Case& row : readCases("sizings.csv")) {
        const Sizing sizing(row);
        expectOutcome(row, sizing.screen, sizing.messages);
        const auto refused = sizing.screen.current;
        EXPECT_EQ(refused ? boxNames[static_cast<std::size_t>(*refused)] : std::string(), row["Refused At"])
            << row.where();
        EXPECT_FALSE(sizing.state.InputError || sizing.state.SizingError) << row.where();
    }
}

TEST(Gases, AreThoseOfTheCaseFile)
{
    const NumberText numbers;
    std::vector<std::string> expected;
    std::vector<std::string> found;
    for (const Case& row : readCases("gases.csv"))
        expected.push_back(row["Case"] + " " + row["Specific Gravity"]);
    for (const Gas& gas : gases)
        found.push_back(gas.name + (" " + numbers.general(gas.specGrav)));
    EXPECT_EQ(found, expected) << "base/gases.h and tests/cases/gases.csv differ";
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
