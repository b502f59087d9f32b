#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"
#include "core/foundation/Json.h"

namespace tarnik {

// The user defaults as a small file: one JSON object.
//
// Owned by the operations made of it. Main thread. Read once, at the start; before each change it is read
// again, so that what others put there meanwhile stays. What can't be read (no object, too long, a link in
// its place) counts as empty, and is moved aside by the first change.
class DefaultsFile {
public:
    static constexpr std::size_t longest = 65536;
    static constexpr std::string_view asideSuffix = ".broken";

    DefaultsFile(std::string path, SystemLog log);

    std::optional<std::string> text(const std::string& key) const;
    bool flag(const std::string& key) const;
    // What can't be written is remembered for this run, and logged.
    void setFlag(const std::string& key);

    static UserDefaults operations(const std::string& path, const SystemLog& log);

private:
    const std::string path_;
    const SystemLog log_;
    Json::Object members_;
};

}  // namespace tarnik
