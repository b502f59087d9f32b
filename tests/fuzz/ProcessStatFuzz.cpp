// For any process name the fields behind it are parsed. In any line only numbers are parsed as numbers.

#include <array>
#include <cstring>
#include <string>

#include "core/process/ProcessStat.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

constexpr int parentField = 4;
constexpr int userField = 14;
constexpr int systemField = 15;
constexpr int startField = 22;

std::string line(const std::string& name, const ProcessStat& stat, int fields) {
    std::string text = "42 (" + name + ") S";
    for (int field = parentField; field <= fields; ++field) {
        text += ' ';
        switch (field) {
            case parentField: text += std::to_string(stat.parent); break;
            case userField: text += std::to_string(stat.userTicks); break;
            case systemField: text += std::to_string(stat.systemTicks); break;
            case startField: text += std::to_string(stat.startTicks); break;
            default: text += "-1";
        }
    }
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(fuzz::textOf(data, size));
    if (const auto raw = ProcessStat::parse(text)) {
        require(ProcessStat::parse(text + " 1") == raw);
        require(ProcessStat::parse("1 (x" + text.substr(text.rfind(')'))) == raw);
    }

    std::array<std::uint64_t, 4> numbers{};
    std::memcpy(numbers.data(), data, std::min(size, sizeof numbers));
    const std::string name = text.substr(std::min(text.size(), sizeof numbers));
    const ProcessStat stat{.parent = static_cast<pid_t>(numbers[0]),
                           .userTicks = numbers[1],
                           .systemTicks = numbers[2],
                           .startTicks = numbers[3]};
    for (const int fields : {startField, 52}) require(ProcessStat::parse(line(name, stat, fields)) == stat);
    require(!ProcessStat::parse(line(name, stat, startField - 1)));
    return 0;
}
