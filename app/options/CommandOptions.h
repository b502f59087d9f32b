#pragma once

#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnik {

// One option of a command line, as the parser, the help and the completions need it.
//
// The placeholder `value` determines which values are accepted and completed: "on|off" is a list of words,
// "N" a whole number from 1 to 100000, "SECONDS" a number up to 3600, and "DIR" and "FILE" are paths.
struct OptionEntry {
    // The help that describes the option. Only development builds accept the last kind.
    enum class Audience { users, developers, developmentBuilds, nobody };

    const char* name;          // without the dashes
    char letter = '\0';        // the short form, or 0
    const char* value = "";    // the placeholder of its value; empty if it takes none
    const char* summary = "";  // begins with a lower-case verb
    Audience audience = Audience::users;

    constexpr bool takesValue() const { return *value != '\0'; }
};

// The parsed options and arguments of a command line.
class CommandOptions {
public:
    struct Given {
        std::string name;
        std::string value;
    };

    // Parses the words after the program's or command's name. An option may stand behind an argument, "--"
    // ends the options, and unambiguous abbreviations are accepted. The error is one line that names the
    // faulty word. Not thread-safe, because getopt_long(3) isn't.
    static std::expected<CommandOptions, std::string> parse(std::span<const OptionEntry> entries,
                                                            const std::vector<std::string>& words);

    bool has(std::string_view name) const { return value(name).has_value(); }

    // Returns the last value that was given; empty for an option without a value.
    std::optional<std::string> value(std::string_view name) const;

    // Returns the value of an option whose placeholder is "N" or "SECONDS".
    std::optional<double> number(std::string_view name) const;

    // In the order of the command line.
    const std::vector<Given>& given() const { return given_; }
    const std::vector<std::string>& arguments() const { return arguments_; }

private:
    std::vector<Given> given_;
    std::vector<std::string> arguments_;
};

// Returns the words of a placeholder such as "on|off", or an empty list for any other placeholder.
std::vector<std::string_view> choicesOf(std::string_view placeholder);

// Returns a message if the placeholder does not accept the value. `what` is the option or argument.
std::optional<std::string> problemWithValue(std::string_view placeholder, const std::string& what,
                                            const std::string& value);

// Returns the name that differs least from a mistyped word, or std::nullopt if all differ too much.
std::optional<std::string_view> nearestName(std::string_view word, std::span<const std::string_view> names);

}  // namespace tarnik
