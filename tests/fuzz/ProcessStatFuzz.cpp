// For any process name the fields behind it are parsed. In any line only numbers are parsed as numbers.

#include <array>
#include <cstring>
#include <map>
#include <string>

#include "core/process/ProcessStat.h"
#include "tests/fuzz/Require.h"

namespace {

using namespace tarnik;
using fuzz::require;

constexpr int startField = 22;

std::string line(const std::string& name, const ProcessStat& stat, int fields) {
    const std::map<int, std::uint64_t> known{
        {14, stat.userTicks}, {15, stat.systemTicks}, {startField, stat.startTicks}};
    std::string text = "42 (" + name + ") S " + std::to_string(stat.parent);
    for (int field = 5; field <= fields; ++field)
        text += known.contains(field) ? " " + std::to_string(known.at(field)) : " -1";
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
