#include "core/process/ProcessStat.h"

#include <charconv>

namespace tarnik {

namespace {

// The numbers of the fields, counted from 1 as the system's manual does.
constexpr int parentField = 4;
constexpr int userTicksField = 14;
constexpr int systemTicksField = 15;
constexpr int startTicksField = 22;

template <class Number>
bool read(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end;
}

// Stores the field if it is one of ours; false when it is and holds no number.
bool store(int field, std::string_view text, ProcessStat& stat) {
    switch (field) {
        case parentField: return read(text, stat.parent);
        case userTicksField: return read(text, stat.userTicks);
        case systemTicksField: return read(text, stat.systemTicks);
        case startTicksField: return read(text, stat.startTicks);
        default: return true;
    }
}

}  // namespace

std::optional<ProcessStat> ProcessStat::parse(std::string_view line) {
    // Behind the name there are only numbers and the letter of the state.
    const std::size_t nameEnd = line.rfind(')');
    if (nameEnd == line.npos) return std::nullopt;
    std::string_view rest = line.substr(nameEnd + 1);

    ProcessStat stat;
    for (int field = 3; field <= startTicksField; ++field) {
        if (!rest.starts_with(' ')) return std::nullopt;
        rest.remove_prefix(1);
        const std::string_view text = rest.substr(0, rest.find(' '));
        if (!store(field, text, stat)) return std::nullopt;
        rest.remove_prefix(text.size());
    }
    return stat;
}

}  // namespace tarnik
