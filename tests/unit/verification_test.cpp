#include "lists/verification.h"
#include "support/cases.h"
#include "support/temporary_directory.h"
#include "tables/build_command.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace
{

/// What is shipped, in a directory of its own.
struct Shipped
{
    TemporaryDirectory directory;
    VerificationPlace place{directory.path.string(), testTables(), "system", "locale", false, "today"};
    std::string duties;

    Shipped()
    {
        std::ostringstream said;
        const std::string tables = (directory.path / "verification.mdb").string();
        EXPECT_EQ(buildCapacities({"--label", "of no valve", SIZING_VERIFICATION_DIR, tables}, said, said), 0);
        std::ifstream in(SIZING_VERIFICATION_DIR "/duties.csv", std::ios::binary);
        duties = {std::istreambuf_iterator<char>(in), {}};
        write(duties);
    }

    /// The same with the row that ends a list of `count` duties.
    static std::string ended(const std::string& text, int count)
    {
        const std::string header = text.substr(0, text.find('\n'));
        const auto separators = static_cast<std::size_t>(std::ranges::count(header, ','));
        return text + "\nend of " + std::to_string(count) + " duties" + std::string(separators, ',') + '\n';
    }

    void write(const std::string& text) const
    {
        std::ofstream(directory.path / "duties.csv", std::ios::binary) << text;
    }
};

} // namespace

TEST(Verification, AgreesOnlyWhenEveryDutyDoesAndEveryFileIsThere)
{
    Shipped shipped;
    for (const bool comma : {false, true}) {
        shipped.place.decimalComma = comma;
        const Verification untouched = verifyProgram(shipped.place);
        EXPECT_TRUE(untouched.agrees) << untouched.report;
        EXPECT_NE(untouched.report.find("verification.mdb\n                       of no valve ("), std::string::npos)
            << untouched.report;
    }
    const std::string firstRow = shipped.duties.substr(0, shipped.duties.find('\n', shipped.duties.find("pump flow")));
    const struct
    {
        std::string duties;
        std::string reported;
    } faults[] = {
        {Shipped::ended(firstRow, 1),
         "1 of 1 duties agree"}, // the one that agrees: without this the others prove nothing
        {Shipped::ended(std::string(firstRow).replace(firstRow.find(",800,"), 5, ",801,"), 1),
         "0 of 1 duties agree\n\npump flow, pad, US\n    Valve Model: Series 61\n"},
        {Shipped::ended(std::string(firstRow).replace(firstRow.find(",800,"), 5, ",801,"), 1),
         "  Pump-Rate Flow: expected \"801\", found \"800\""},
        {firstRow + ",", "duties.csv:2: not a row of this list"},
        {Shipped::ended(firstRow.substr(0, firstRow.find('\n')), 0), "duties.csv: rows are missing"},
        {shipped.duties.substr(0, shipped.duties.find("\nend of ")), "duties.csv: rows are missing"},
        {Shipped::ended(firstRow, 2), "duties.csv: rows are missing"},
    };
    for (const auto& fault : faults) {
        shipped.write(fault.duties);
        const Verification found = verifyProgram(shipped.place);
        EXPECT_EQ(found.agrees, &fault == faults) << found.report;
        EXPECT_NE(found.report.find(fault.reported), std::string::npos) << fault.reported << "\n" << found.report;
    }
    shipped.write(Shipped::ended(firstRow, 1));
    const auto isWithout = [&](const std::string& file, const std::string& reported) {
        std::filesystem::remove(shipped.directory.path / file);
        const Verification found = verifyProgram(shipped.place);
        EXPECT_FALSE(found.agrees) << file;
        EXPECT_NE(found.report.find(reported), std::string::npos) << reported << "\n" << found.report;
    };
    shipped.place.dataFile += ".none";
    isWithout("none", " capacities.mdb.none is missing");
    isWithout("duties.csv", "Not verified: ");
    isWithout("verification.mdb", " verification.mdb is missing");
}
