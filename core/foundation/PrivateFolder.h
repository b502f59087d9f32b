#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A folder with small files that only this user may read, such as notes from one run to the next.
//
// Works through the open folder, follows no link and blocks on no pipe. A file that isn't a regular file of
// this user counts as absent.
class PrivateFolder {
public:
    // Makes the folder and those above it that are missing, and sets its mode to 0700. Returns std::nullopt
    // if the folder belongs to somebody else or can't be made.
    static std::optional<PrivateFolder> open(const std::string& path);

    // Opens the file for reading and writing and sets its mode to 0600. Makes it only with O_CREAT in
    // `flags`.
    UniqueFd openFile(const std::string& name, int flags) const;

    // Returns the whole file, or std::nullopt if it has more than `maxBytes`.
    std::optional<std::string> read(const std::string& name, std::size_t maxBytes) const;

    // Replaces the file by one that holds `bytes`. A failure leaves the old one.
    bool replace(const std::string& name, std::string_view bytes) const;

    void remove(const std::string& name) const;

private:
    explicit PrivateFolder(UniqueFd folder) : folder_(std::move(folder)) {}

    UniqueFd folder_;
};

}  // namespace tarnik
