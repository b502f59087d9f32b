#include "core/process/ProcessStat.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(ProcessStat, isNotMisledByTheNameOfTheProcess) {
    const std::string numbers = " S 41 41 41 0 -1 4194304 97 0 0 0 250 50 3 4 20 0 1 0 488501 3133440 362";
    const ProcessStat stat{.parent = 41, .userTicks = 250, .systemTicks = 50, .startTicks = 488501};
    const std::tuple<const char*, std::string, std::optional<ProcessStat>> cases[] = {
        {"blanks, parentheses and line ends", "42 (a) R 1 (b\n) Z)" + numbers, stat},
        {"no name at all", "42 ()" + numbers, stat},
        {"start at the very end", "42 (x)" + numbers.substr(0, numbers.find(" 3133440")), stat},
        {"cut before the start", "42 (x)" + numbers.substr(0, numbers.find(" 488501")), std::nullopt},
        {"cut within the name", "42 (cat", std::nullopt},
        {"a field without a number", "42 (x) S 41x" + numbers.substr(5), std::nullopt},
        {"a parent beyond all pids", "42 (x) S 4294967297" + numbers.substr(5), std::nullopt},
        {"nothing", "", std::nullopt},
    };
    for (const auto& [why, line, parsed] : cases) EXPECT_EQ(ProcessStat::parse(line), parsed) << why;
}

}  // namespace
}  // namespace tarnik
