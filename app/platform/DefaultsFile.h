#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "app/platform/SystemFolders.h"
#include "app/platform/SystemLog.h"
#include "app/platform/UserDefaults.h"
#include "core/foundation/Json.h"

namespace tarnik {

// Stores the user defaults in a small file that contains one JSON object.
//
// Owned by its operations. Main thread only. Reads the file at the start and before each change, so that
// changes by other programs are kept. A file that is too long, is no regular file or contains no JSON object
// counts as empty. The first change renames that file.
class DefaultsFile {
public:
    static constexpr std::size_t maxBytes = 65536;
    static constexpr std::string_view asideSuffix = ".broken";

    DefaultsFile(std::string path, SystemLog log);

    std::optional<std::string> text(const std::string& key) const;
    bool flag(const std::string& key) const;
    // Store and remove the flag. If the file can't be written, keep the change for this run and log the
    // error.
    void setFlag(const std::string& key);
    void clearFlag(const std::string& key);

    // Returns the path of the program's file.
    static std::string pathIn(const SystemFolders& folders);

    static UserDefaults operations(const std::string& path, const SystemLog& log);

private:
    void change(const std::function<void(Json::Object&)>& edit);

    const std::string path_;
    const SystemLog log_;
    Json::Object members_;
};

}  // namespace tarnik
