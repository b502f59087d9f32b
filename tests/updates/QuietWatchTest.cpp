#include "core/updates/QuietWatch.h"

#include <sstream>
#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;

TimePoint steady(double seconds) {
    return after(TimePoint(), Seconds(seconds));
}

// Parses a sample: the second of the sample, then in any order s while setting up, w for a window in use,
// h2@60 for holder 2 since second 60, ? for unknown holders, n for another node, - for no node, d20@9.5 for
// driver 20 and its processor seconds, c for a process clock that was set back by a day.
ActivitySample parsed(const std::string& text) {
    std::istringstream words(text);
    double at = 0;
    words >> at;
    const auto process = [](double second) {
        return ProcessTime(1000 * 24h) + std::chrono::duration_cast<ProcessClock::duration>(Seconds(second));
    };
    ActivitySample sample{.at = {steady(at), process(at)}, .nodePID = 10, .holders = {{}}};
    for (std::string word; words >> word;) {
        const auto number = static_cast<pid_t>(std::atoi(word.c_str() + 1));
        const double detail = std::atof(word.c_str() + std::min(word.find('@'), word.size() - 1) + 1);
        switch (word[0]) {
            case 's': sample.settingUp = true; break;
            case 'w': sample.windowInUse = true; break;
            case 'h': sample.holders->push_back({number, process(detail)}); break;
            case '?': sample.holders.reset(); break;
            case 'n': sample.nodePID = 11; break;
            case '-': sample.nodePID.reset(); break;
            case 'c': sample.at.process -= 24h; break;
            default:
                sample.driverPID = number;
                if (detail > 0) sample.driverCPUSeconds = detail;
        }
    }
    if (sample.holders) sample.nodeHoldsAwake = !sample.holders->empty();
    return sample;
}

TEST(QuietWatch, findsTheBusySamples) {
    // The samples, and for each one b (busy) or a dot.
    const std::tuple<const char*, std::string, std::string> cases[] = {
        {"installing or pairing", "0 s", "b"},
        {"the person looks at the window", "0 w", "b"},
        {"the node works", "0 h1@0", "b"},
        {"nobody knows about the node", "0 ?", "b"},
        {"a first driver, whatever it has used", "0 d20@9", "."},
        {"exactly the allowance", "0 d20@9|60 d20@9.25|180 d20@9.75", "..."},
        {"more than the allowance, once", "0 d20@9|60 d20@9.252|120 d20@9.3", ".b."},
        {"within a second, counted as one", "0 d20@9|0.001 d20@9.004|0.002 d20@9.009", "..b"},
        {"another driver, once", "0 d20@9|60 d21@9|120 d21@9", ".b."},
        {"a driver after none", "0 d20@9|60|120 d21@9", "..."},
        {"a driver after it could not be read", "0 d20@9|60 d20@|120 d20@99", "..."},

        {"a holder ended before its cap", "0 h1@0|3479", "b."},
        {"ended close to its cap", "0 h1@0|3480", "bb"},
        {"ended by its cap, and nobody follows", "0 h1@0|3500|7079|7080", "bbb."},
        {"the clock of processes put back", "0 h1@0|3500|7079 c|7080 c", "bbb."},
        {"seen very late, it counts once", "0 h1@0|36000|36060", "bb."},
        {"a successor, which ends early", "0 h1@0|3500|3560 h2@3540|3620", "bbb."},
        {"a successor with the same pid", "0 h1@0|3500 h1@3481|3560", "bb."},
        {"one from before the mark is no successor", "0 h1@0|3500|3510 h2@3480|3520", "bbbb"},
        {"the latest of several marks counts",
         "100 h1@0 h2@60 h3@30|3500 h2@60 h3@30|3545 h3@30|3550|3560 h4@3520|3570|7139|7140", "bbbbbbb."},
        {"another node after the cap", "0 h1@0|3500|3560 n", "bb."},
        {"another node with the cap", "0 h1@0|3500 n", "b."},
        {"no node after the cap", "0 h1@0|3500|3560 -", "bb."},
        {"unknown while the cap passes", "0 h1@0|3470 ?|3500|3560", "bbbb"},
    };
    for (const auto& [why, samples, expected] : cases) {
        QuietWatch watch;
        std::string seen;
        std::istringstream stream(samples);
        for (std::string text; std::getline(stream, text, '|');) {
            const ActivitySample sample = parsed(text);
            watch.observe(sample);
            seen += watch.lastBusy == sample.at.steady ? 'b' : '.';
        }
        EXPECT_EQ(seen, expected) << why;
    }
}

TEST(QuietWatch, isQuietAfterAWholeStretch) {
    QuietWatch watch;
    EXPECT_FALSE(watch.isQuiet(steady(9999)));
    watch.observe(parsed("0"));
    EXPECT_FALSE(watch.isQuiet(steady(599)));
    EXPECT_TRUE(watch.isQuiet(steady(600)));
    watch.observe(parsed("300 ? d20@9"));
    EXPECT_FALSE(watch.isQuiet(steady(899)));
    EXPECT_TRUE(watch.isQuiet(steady(900)));
    watch.reset();
    EXPECT_FALSE(watch.isQuiet(steady(9999)));
    watch.observe(parsed("960 d20@99"));
    EXPECT_EQ(watch.lastBusy, steady(960)) << "reset() keeps the driver";
}

}  // namespace
}  // namespace tarnik
