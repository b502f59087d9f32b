#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnik {

// Builds the text of a JSON object, with the members in the order of the calls. An absent value becomes null,
// so that a reader finds every member. Invalid UTF-8 in a text becomes U+FFFD.
class JsonObject {
public:
    void addText(std::string_view key, const std::optional<std::string>& value);
    void addNumber(std::string_view key, std::optional<std::int64_t> value);
    void addFlag(std::string_view key, bool value);

    // Adds a value that is JSON already.
    void addJson(std::string_view key, std::string_view json);

    std::string text() const { return "{" + members_ + "}"; }

private:
    std::string members_;
};

}  // namespace tarnik
