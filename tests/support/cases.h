#pragma once

#include "base/main_screen.h"
#include "engine/plain_screen.h"

#include <cstddef>
#include <map>
#include <string>
#include <vector>

/// One row of a case file, by the names in its header.
class Case
{
public:
    Case(std::size_t line, std::map<std::string, std::string> fields) : line_(line), fields_(std::move(fields)) {}
    const std::string& operator[](const std::string& column) const { return fields_.at(column); }
    std::string where() const { return "line " + std::to_string(line_) + ", " + fields_.at("Case"); }

private:
    std::size_t line_;
    std::map<std::string, std::string> fields_;
};

/// What tests/cases/`file` holds.
std::string caseText(const std::string& file);

/// Its rows.
std::vector<Case> readCases(const std::string& file);

/// A data file for the tests, made once a run: every valve passes 10 x Cv x pressure in the unit of its table, so that
/// a tester can work a case out by hand; the large-tank tables give other flows than the formula for small tanks.
const std::string& testTables();

/// The column of a case file for each entry and each caption of the main form.
struct EntryColumn
{
    const char* column;
    Box box;
};
inline constexpr EntryColumn entryColumns[] = {
    {"Pump Rate", Box::txtPumpRate},         {"Pressure", Box::txtPressure},
    {"Tank Volume", Box::txtTankVolume},     {"Specific Gravity", Box::txtSpecGrav},
    {"Boiling Point", Box::txtBoilingPoint}, {"Flash Point", Box::txtFlashPoint},
};

/// Expects the captions and the messages that the row gives.
void expectOutcome(const Case& row, const MainScreen& screen, const RecordedMessages& messages);
