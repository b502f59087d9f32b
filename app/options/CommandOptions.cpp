#include "app/options/CommandOptions.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <ranges>

#include <getopt.h>

#include "core/foundation/TextCleanup.h"

namespace tarnik {
namespace {

constexpr int firstCode = 256;  // of long options; lower codes are letters
constexpr double largestNumber = 100'000;
constexpr double longestSeconds = 3600;
constexpr std::size_t longestQuote = 200;

std::string quoted(const std::string& word) {
    return sanitizedLine(word, longestQuote);
}

std::optional<double> parseNumber(const std::string& text) {
    char* end = nullptr;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value > 0)) return std::nullopt;
    return value;
}

bool isCount(const std::string& text) {
    const auto value = parseNumber(text);
    return value && *value <= largestNumber && text.find_first_not_of("0123456789") == std::string::npos;
}

// Returns "on, off or auto".
std::string listed(const std::vector<std::string_view>& words) {
    std::string text;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (i > 0) text += i + 1 == words.size() ? " or " : ", ";
        text += words[i];
    }
    return text;
}

std::size_t editDistance(std::string_view from, std::string_view to) {
    std::vector<std::size_t> previous(to.size() + 1);
    std::vector<std::size_t> row(to.size() + 1);
    std::vector<std::size_t> beforePrevious;
    std::iota(previous.begin(), previous.end(), std::size_t(0));
    for (std::size_t i = 1; i <= from.size(); ++i) {
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t replaced = previous[j - 1] + (from[i - 1] == to[j - 1] ? 0 : 1);
            row[j] = std::min({previous[j] + 1, row[j - 1] + 1, replaced});
            const bool swapped = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (swapped) row[j] = std::min(row[j], beforePrevious[j - 2] + 1);
        }
        beforePrevious = previous;
        previous = row;
    }
    return previous.back();
}

// The arguments of getopt_long(3), which keeps pointers into them.
struct GetoptInput {
    std::vector<std::string> words{"tarnik"};
    std::vector<char*> argv;
    std::vector<option> longOptions;
    // "-" returns arguments in their order, ":" separates a missing value from an unknown option.
    std::string letters = "-:";

    GetoptInput(std::span<const OptionEntry> entries, const std::vector<std::string>& given) {
        words.insert(words.end(), given.begin(), given.end());
        for (auto& word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        for (const auto& entry : entries) {
            const int code = firstCode + static_cast<int>(longOptions.size());
            longOptions.push_back(
                {entry.name, entry.takesValue() ? required_argument : no_argument, nullptr, code});
            if (entry.letter == '\0') continue;
            letters += entry.letter;
            if (entry.takesValue()) letters += ':';
        }
        longOptions.push_back({nullptr, 0, nullptr, 0});
    }

    int next() { return ::getopt_long(argc(), argv.data(), letters.c_str(), longOptions.data(), nullptr); }
    int argc() const { return static_cast<int>(words.size()); }
};

const OptionEntry* findEntry(std::span<const OptionEntry> entries, int code) {
    if (code >= firstCode) return &entries[static_cast<std::size_t>(code - firstCode)];
    const auto found = std::ranges::find_if(
        entries, [code](const auto& entry) { return code != 0 && entry.letter == static_cast<char>(code); });
    return found == entries.end() ? nullptr : &*found;
}

std::string unknownOption(std::span<const OptionEntry> entries, std::string word) {
    word = word.substr(0, word.find('='));
    std::vector<std::string> names;
    for (const auto& entry : entries) {
        if (entry.audience != OptionEntry::Audience::nobody) names.push_back(std::string("--") + entry.name);
    }
    const std::vector<std::string_view> views(names.begin(), names.end());
    const auto nearest = nearestName(word, views);
    return "unknown option " + quoted(word) +
           (nearest ? "; did you mean " + std::string(*nearest) + "?" : "");
}

std::string describeFault(std::span<const OptionEntry> entries, const GetoptInput& input) {
    const auto* entry = findEntry(entries, optopt);
    if (entry == nullptr && optopt != 0)
        return unknownOption(entries, std::string("-") + static_cast<char>(optopt));
    if (entry == nullptr) return unknownOption(entries, input.argv[static_cast<std::size_t>(optind - 1)]);
    return std::string("--") + entry->name + (entry->takesValue() ? " needs a value" : " takes no value");
}

}  // namespace

std::expected<CommandOptions, std::string> CommandOptions::parse(std::span<const OptionEntry> entries,
                                                                 const std::vector<std::string>& words) {
    CommandOptions options;
    GetoptInput input(entries, words);
    ::opterr = 0;
    ::optind = 0;  // makes getopt_long start over
    for (int code = input.next(); code != -1; code = input.next()) {
        if (code == 1) {
            options.arguments_.emplace_back(::optarg);
            continue;
        }
        if (code == '?' || code == ':') return std::unexpected(describeFault(entries, input));
        const auto& entry = *findEntry(entries, code);
        const std::string value = entry.takesValue() ? ::optarg : "";
        const std::string name = std::string("--") + entry.name;
        if (entry.takesValue() && value.empty()) return std::unexpected(name + " needs a value");
        if (auto problem = problemWithValue(entry.value, name, value)) return std::unexpected(*problem);
        options.given_.push_back({.name = entry.name, .value = value});
    }
    for (int i = ::optind; i < input.argc(); ++i)
        options.arguments_.push_back(input.words[static_cast<std::size_t>(i)]);
    return options;
}

std::optional<std::string> CommandOptions::value(std::string_view name) const {
    for (const auto& option : given_ | std::views::reverse) {
        if (option.name == name) return option.value;
    }
    return std::nullopt;
}

std::optional<double> CommandOptions::number(std::string_view name) const {
    const auto text = value(name);
    return text ? parseNumber(*text) : std::nullopt;
}

std::vector<std::string_view> choicesOf(std::string_view placeholder) {
    std::vector<std::string_view> words;
    if (!placeholder.contains('|')) return words;
    for (const auto part : std::views::split(placeholder, '|')) words.emplace_back(part.begin(), part.end());
    return words;
}

std::optional<std::string> problemWithValue(std::string_view placeholder, const std::string& what,
                                            const std::string& value) {
    const auto refuse = [&](const std::string& wanted) {
        return what + " takes " + wanted + ", not " + quoted(value);
    };
    const auto choices = choicesOf(placeholder);
    if (!choices.empty() && std::ranges::find(choices, value) == choices.end())
        return refuse(listed(choices));
    if (placeholder == "N" && !isCount(value)) return refuse("a number from 1 to 100000");
    const auto number = parseNumber(value);
    if (placeholder == "SECONDS" && (!number || *number > longestSeconds))
        return refuse("seconds, up to 3600");
    return std::nullopt;
}

std::optional<std::string_view> nearestName(std::string_view word, std::span<const std::string_view> names) {
    std::optional<std::string_view> nearest;
    std::size_t least = std::max<std::size_t>(2, word.size() / 3) + 1;
    for (const auto name : names) {
        const auto distance = editDistance(word.substr(0, longestQuote), name);
        if (distance >= least || distance >= name.size()) continue;
        least = distance;
        nearest = name;
    }
    return nearest;
}

}  // namespace tarnik
