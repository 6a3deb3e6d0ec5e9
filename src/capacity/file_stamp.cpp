#include "capacity/file_stamp.h"

#include <algorithm>
#include <chrono>

bool FileStamp::isSettled() const
{
    using namespace std::chrono;
    constexpr std::int64_t coarsestTime = nanoseconds(seconds(3)).count(); // FAT counts in steps of 2 s
    const std::int64_t now = duration_cast<nanoseconds>(system_clock::now().time_since_epoch()).count();
    const std::int64_t lastChange = modified > now ? changed : std::max(modified, changed); // files can be dated ahead
    return lastChange < now - coarsestTime;
}
