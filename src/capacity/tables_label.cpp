#include "capacity/tables_label.h"

#include "base/failure.h"
#include "capacity/capacity_store.h"

std::optional<TablesLabel> tablesLabel(CapacityStore& store)
{
    try {
        const CapacityRows row = store.query("SELECT label, date FROM Label", {});
        return TablesLabel{row.text("label"), row.text("date")};
    } catch (const std::runtime_error&) { // a failure of the file, or a label that is no text
        return std::nullopt;
    }
}

std::string tablesChecksum(CapacityStore& store)
{
    try {
        return store.query("SELECT value FROM Checksum", {}).text("value");
    } catch (const std::runtime_error&) {
        return "";
    }
}
