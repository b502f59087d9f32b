#include "core/process/ProcessStat.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

namespace tarnik {

TEST(ProcessStat, parsesAnyProcessName) {
    const std::string numbers = " S 41 41 41 0 -1 4194304 97 0 0 0 250 50 3 4 20 0 1 0 488501 3133440 362";
    const ProcessStat stat{.parent = 41, .userTicks = 250, .systemTicks = 50, .startTicks = 488501};
    const std::tuple<const char*, std::string, std::optional<ProcessStat>> cases[] = {
        {"spaces, parentheses and line ends", "42 (a) R 1 (b\n) Z)" + numbers, stat},
        {"an empty name", "42 ()" + numbers, stat},
        {"the start time last", "42 (x)" + numbers.substr(0, numbers.find(" 3133440")), stat},
        {"no start time", "42 (x)" + numbers.substr(0, numbers.find(" 488501")), std::nullopt},
        {"cut in the name", "42 (cat", std::nullopt},
        {"a field without a number", "42 (x) S 41x" + numbers.substr(5), std::nullopt},
        {"a parent that is no pid", "42 (x) S 4294967297" + numbers.substr(5), std::nullopt},
        {"no space behind the name", "42 (x)" + numbers.substr(1), std::nullopt},
        {"an empty line", "", std::nullopt},
    };
    for (const auto& [why, line, parsed] : cases) EXPECT_EQ(ProcessStat::parse(line), parsed) << why;
}

}  // namespace tarnik
