#pragma once

#include "capacity/file_check.h"
#include "engine/sizing_driver.h"
#include "support/cases.h"
#include "support/sizing_fixture.h"

#include <fstream>

/// A sizing that reads a large-tank table and a valve table, on a copy of the tables of the tests with a checksum.
class DataFile : public SizingTest
{
protected:
    DataFile()
    {
        std::filesystem::copy_file(testTables(), file);
        sqlite3* database = nullptr;
        sqlite3_open(file.string().c_str(), &database);
        writeChecksum(database);
        sqlite3_close(database);
        state.ValveTable = "psi_Pad";
        state.PressUnits = "PSI";
    }

    /// 800 + 25000 SCFH take 64 % of Cv 20 at 200 psi; without the breathing Cv 1 would look fit.
    std::string size()
    {
        screen.boxes = {{Box::txtPumpRate, "100"},
                        {Box::txtPressure, "200"},
                        {Box::txtSpecGrav, "0.97"},
                        {Box::txtTankVolume, "1000000"}};
        screen.captions.clear();
        cmdCalcFlowRate_Click(sizing);
        EXPECT_TRUE(messages.texts.empty());
        return screen.hasValve() ? screen.caption(Label::lblCV) + " " + screen.caption(Label::lblPercentValveCapacity)
                                 : comments();
    }

    /// Names and bytes of all that lies in the directory of the file.
    std::map<std::string, std::string> everything() const
    {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(directory))
            files[entry.path().filename().string()] = entry.is_directory() ? "" : contents(entry.path());
        return files;
    }
    static std::string contents(const std::filesystem::path& path)
    {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};
