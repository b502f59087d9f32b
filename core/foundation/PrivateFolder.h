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
// Uses the open folder's descriptor and never blocks on a pipe. An operation follows no link in the last path
// component. A file that isn't a regular file of this user counts as missing.
class PrivateFolder {
public:
    // Creates the folder and its missing parents, and sets the folder's mode to 0700. Returns std::nullopt on
    // failure, or if the folder is a link or belongs to another user.
    static std::optional<PrivateFolder> open(const std::string& path);

    // Opens the file for reading and writing and sets the file's mode to 0600. Creates a missing file only if
    // `flags` contains O_CREAT. Returns an empty UniqueFd on failure.
    UniqueFd openFile(const std::string& name, int flags) const;

    // Returns the contents, or std::nullopt if reading fails or the contents exceed `maxBytes`.
    std::optional<std::string> read(const std::string& name, std::size_t maxBytes) const;

    // Replaces the file atomically. Returns false on failure. The old file is then unchanged.
    bool replace(const std::string& name, std::string_view bytes) const;

    void remove(const std::string& name) const;

    // Returns the folder's descriptor, which this object keeps, for other system calls.
    int descriptor() const { return folder_.get(); }

private:
    explicit PrivateFolder(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik
