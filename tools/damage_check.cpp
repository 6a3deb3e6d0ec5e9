// Checks that a damaged data file never gives a wrong answer: damage_check [HOW MANY [FIRST SEED]]
//
// Sizes a few duties on the shipped file. Then it sizes them on copies that are damaged at random,
// or cut short by 1 to 4,095 bytes. The damages follow from the seed, so a finding can be repeated.
// Each answer must be the right one, a refusal or a message. Exit status 1 when one is not, 2 when
// the check could not run.

#include "capacity/capacity_store.h"
#include "engine/fresh_sizing.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

namespace
{

struct Duty
{
    const char* valveModel;
    const char* valveType;
    const char* pressUnits;
    const char* method;
    const char* pumpRate;
    const char* pressure;
    const char* tankVolume;
    const char* gravity;
};

const Duty duties[] = {
    {choice::series61, choice::pad, "PSI", choice::api2000, "100", "60", "1000000",
     "0.97"}, // a large tank: breathing from its table
    {choice::series61, choice::pad, "PSI", choice::directDisplacement, "337.5", "62", "0", "0.97"},
    {choice::series61, choice::pad, "kg/cm2", choice::api2000, "50", "3", "20000", "1"},
    {choice::series61, choice::pad, "kPa", choice::directDisplacement, "20", "300", "0", "0.6"},
    {choice::series63, choice::depad, "in wc", choice::api2000, "40", "20", "2000000", "1"},
    {choice::series63, choice::depad, "mbar", choice::api2000, "50", "50", "8500", "1"},
};

/// What the main form shows after one click, and what was said in message boxes.
struct Answer
{
    PlainScreen screen;
    bool message = false;

    bool isValve() const { return screen.hasValve(); }
};

Answer answerOf(const Duty& duty, const std::string& file)
{
    const NumberText numbers;
    CapacityStore store(file, numbers);
    FreshSizing sizing(*findOffer(duty.valveModel, duty.valveType, duty.pressUnits), duty.method, numbers);
    sizing.screen.boxes.insert_or_assign(Box::txtPumpRate, duty.pumpRate);
    sizing.screen.boxes.insert_or_assign(Box::txtPressure, duty.pressure);
    sizing.screen.boxes.insert_or_assign(Box::txtTankVolume, duty.tankVolume);
    sizing.screen.boxes.insert_or_assign(Box::txtSpecGrav, duty.gravity);
    sizing.screen.boxes.insert_or_assign(Box::txtFlashPoint, "200");
    sizing.click(numbers, store);
    return {sizing.screen, !sizing.messages.texts.empty()};
}

/// Does one damage of the kinds that disks, copies and editors do.
void damage(std::string& bytes, std::mt19937_64& random)
{
    const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
    const std::size_t at = below(bytes.size());
    const std::size_t length = std::min<std::size_t>(1 + below(std::size_t{1} << (2 + below(12))), bytes.size() - at);
    const std::size_t pages = bytes.size() / 4096;
    const std::size_t from = pages > 0 ? below(pages) * 4096 : 0;
    const std::size_t to = pages > 0 ? below(pages) * 4096 : 0;
    switch (below(8)) {
        case 0:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << below(8)));
            break;
        case 1:
            bytes[at] = static_cast<char>(random());
            break;
        case 2:
            std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), length, '\0');
            break;
        case 3:
            std::generate_n(bytes.begin() + static_cast<std::ptrdiff_t>(at), length,
                            [&] { return static_cast<char>(random()); });
            break;
        case 4:
            bytes.erase(at, length);
            break;
        case 5:
            bytes.insert(at, length, static_cast<char>(random()));
            break;
        case 6:
            if (pages > 0) // one page in the place of another
                bytes.replace(to, 4096, std::string(bytes, from, 4096));
            break;
        default:
            bytes.resize(at);
    }
}

class Check
{
public:
    explicit Check(const std::filesystem::path& directory) : file_((directory / "capacities.mdb").string())
    {
        std::ifstream in(CAPACITIES_FILE, std::ios::binary);
        intact_.assign(std::istreambuf_iterator<char>(in), {});
        for (const Duty& duty : duties)
            right_.push_back(answerOf(duty, CAPACITIES_FILE));
        if (!std::ranges::all_of(right_, &Answer::isValve))
            throw std::runtime_error("a duty has no valve on the whole file");
    }

    void damaged(std::uint64_t seed)
    {
        std::mt19937_64 random(seed);
        std::string bytes = intact_;
        for (std::uint64_t damages = 1 + random() % 3; damages > 0 && !bytes.empty(); --damages)
            damage(bytes, random);
        compare(bytes, "seed " + std::to_string(seed));
    }

    void cut(std::size_t length)
    {
        compare(intact_.substr(0, intact_.size() - length), "cut by " + std::to_string(length));
        cutsWithValve_ += valves_ > 0;
    }

    int report() const
    {
        std::cout << files_ << " files, " << files_ * std::size(duties) << " sizings: " << rightAnswers_ << " right, "
                  << refusals_ << " refused, " << messages_ << " with a message, " << wrong_ << " wrong; "
                  << cutsWithValve_ << " cuts with a valve\n";
        return wrong_ + cutsWithValve_ > 0 ? 1 : 0;
    }

private:
    void compare(const std::string& bytes, const std::string& what)
    {
        std::ofstream out(file_, std::ios::binary | std::ios::trunc);
        out << bytes;
        out.close();
        if (!out)
            throw std::runtime_error("cannot write " + file_);
        // The program waits for a file that was changed a moment ago: it may be a copy on its way.
        std::filesystem::last_write_time(file_, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
        ++files_;
        valves_ = 0;
        for (std::size_t at = 0; at < std::size(duties); ++at) {
            const Answer answer = answerOf(duties[at], file_);
            valves_ += answer.isValve();
            if (answer.screen.captions == right_[at].screen.captions)
                ++rightAnswers_;
            else if (!answer.isValve())
                ++(answer.message ? messages_ : refusals_);
            else if (++wrong_ > 0)
                std::cout << "WRONG: " << what << ", duty " << at << '\n';
        }
    }

    std::string file_;
    std::string intact_;
    std::vector<Answer> right_;
    std::size_t files_ = 0, rightAnswers_ = 0, refusals_ = 0, messages_ = 0, wrong_ = 0, cutsWithValve_ = 0,
                valves_ = 0;
};

} // namespace

int main(int argc, char* argv[])
{
    std::string pattern = (std::filesystem::temp_directory_path() / "damage-check-XXXXXX").string();
    const char* const directory = mkdtemp(pattern.data());
    int status = 2;
    try {
        const std::uint64_t count = argc > 1 ? std::stoull(argv[1]) : 10'000;
        const std::uint64_t first = argc > 2 ? std::stoull(argv[2]) : 1;
        if (directory == nullptr)
            throw std::runtime_error("no temporary directory");
        Check check(directory);
        for (std::uint64_t seed = first; seed < first + count; ++seed)
            check.damaged(seed);
        for (std::size_t length = 1; length <= 4095; ++length)
            check.cut(length);
        status = check.report();
    } catch (const std::exception& failure) {
        std::cerr << "damage_check [HOW MANY [FIRST SEED]]: " << failure.what() << '\n';
    }
    if (directory != nullptr)
        std::filesystem::remove_all(directory);
    return status;
}
