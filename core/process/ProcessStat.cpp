#include "core/process/ProcessStat.h"

#include <charconv>

namespace tarnik {

namespace {

// The numbers of the fields, counted from 1 as in proc(5).
constexpr int parentField = 4;
constexpr int userTicksField = 14;
constexpr int systemTicksField = 15;
constexpr int startTicksField = 22;

template <class Number>
bool read(std::string_view text, Number& number) {
    const auto [stopped, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && stopped == text.data() + text.size();
}

// Returns the position of the last closing parenthesis. It ends the name, because only a letter and numbers
// follow. Searches from the front, because find() is vectorised and rfind() isn't.
std::size_t endOfName(std::string_view line) {
    std::size_t last = line.npos;
    for (std::size_t at = line.find(')'); at != line.npos; at = line.find(')', at + 1)) last = at;
    return last;
}

// Stores the field if we use it. Returns false if a field that we use isn't a number.
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
    const std::size_t nameEnd = endOfName(line);
    if (nameEnd == line.npos) return std::nullopt;
    const std::string_view rest = line.substr(nameEnd + 1);

    ProcessStat stat;
    const char* at = rest.data();
    const char* const end = at + rest.size();
    for (int field = 3; field <= startTicksField; ++field) {
        if (at == end || *at != ' ') return std::nullopt;
        const char* const begin = ++at;
        while (at != end && *at != ' ') ++at;
        if (!store(field, {begin, at}, stat)) return std::nullopt;
    }
    return stat;
}

}  // namespace tarnik
