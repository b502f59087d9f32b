#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A folder with small files that only this user can read, such as records that one run leaves for the next.
//
// Uses the open folder's descriptor, follows no link and never blocks on a pipe. A file that isn't a regular
// file of this user counts as missing.
class PrivateFolder {
public:
    // Creates the folder and its missing parents, and sets its mode to 0700. Returns std::nullopt if that
    // fails, or if the folder is a link or belongs to another user.
    static std::optional<PrivateFolder> open(const std::string& path);

    // Opens the file for reading and writing and sets its mode to 0600. Creates it only if `flags` contains
    // O_CREAT. Returns an empty owner on failure.
    UniqueFd openFile(const std::string& name, int flags) const;

    // Returns the contents, or std::nullopt on failure or if they exceed `maxBytes`.
    std::optional<std::string> read(const std::string& name, std::size_t maxBytes) const;

    // Replaces the file atomically. On failure the old file is unchanged.
    bool replace(const std::string& name, std::string_view bytes) const;

    void remove(const std::string& name) const;

    // Returns the open folder, for calls that this class doesn't have.
    int descriptor() const { return folder_.get(); }

private:
    explicit PrivateFolder(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik
