#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarnik {

// The contents of a folder, in a form that can be stored and compared. The path of each entry below the
// folder is mapped to a text with the entry's kind, mode and content.
//
//   kind            text
//   file            "f 755 " and the SHA-256 of the content, or "f 755 ?" if the file can't be read
//   folder          "d 755"
//   symbolic link   "l " and the target; links are not followed
//   anything else   "o"
//
// In a path or a target, spaces, percent signs and bytes that aren't printable ASCII are written as %XX.
struct TreeListing {
    static constexpr std::size_t maxEntries = 100'000;

    using Digest = std::function<std::optional<std::string>(const std::string& path)>;  // of a file

    std::map<std::string, std::string, std::less<>> entries;

    // Blocks while every file is read. Returns std::nullopt if `folder` can't be opened or has more than
    // maxEntries entries. The result lacks the contents of subfolders that can't be opened.
    static std::optional<TreeListing> of(const std::string& folder, const Digest& digest);

    // Returns one line per entry: the entry's text, a space and the entry's path.
    std::string text() const;

    bool operator==(const TreeListing&) const = default;
};

// The differences between a recorded tree and the tree on the disk. Paths are sorted.
struct TreeDifferences {
    struct ModeChange {
        std::string was;  // octal
        std::string is;

        bool operator==(const ModeChange&) const = default;
    };

    std::vector<std::string> changed;
    std::vector<std::string> missing;
    std::vector<std::string> added;
    // The paths in `changed` of which only the mode has changed, as far as the content can be read.
    std::map<std::string, ModeChange, std::less<>> modes;

    static TreeDifferences between(const TreeListing& recorded, const TreeListing& found);

    std::size_t count() const { return changed.size() + missing.size() + added.size(); }
    bool operator==(const TreeDifferences&) const = default;
};

}  // namespace tarnik
