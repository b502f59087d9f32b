#include "core/node/TreeListing.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/DirectoryReader.h"

namespace tarnik {

namespace {

constexpr mode_t modeBits = 07777;

std::string escaped(std::string_view bytes) {
    std::string text;
    for (const char character : bytes) {
        if (character > ' ' && character <= '~' && character != '%') {
            text += character;
            continue;
        }
        std::array<char, 4> code{};
        std::snprintf(code.data(), code.size(), "%%%02X", static_cast<unsigned char>(character));
        text += code.data();
    }
    return text;
}

std::string octal(mode_t mode) {
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "%o", static_cast<unsigned>(mode & modeBits));
    return digits.data();
}

std::string targetOf(const std::string& link) {
    std::array<char, PATH_MAX> target{};
    const ssize_t size = ::readlink(link.c_str(), target.data(), target.size());
    return size < 0 ? "?" : escaped({target.data(), static_cast<std::size_t>(size)});
}

std::string textOf(const std::string& path, mode_t mode, const TreeListing::Digest& digest) {
    if (S_ISREG(mode)) return "f " + octal(mode) + " " + digest(path).value_or("?");
    if (S_ISDIR(mode)) return "d " + octal(mode);
    if (S_ISLNK(mode)) return "l " + targetOf(path);
    return "o";
}

struct EntryParts {
    std::string_view kind;
    std::string_view mode;
    std::string_view content;
};

EntryParts partsOf(std::string_view entry) {
    const auto kindEnd = std::min(entry.find(' '), entry.size());
    EntryParts parts{.kind = entry.substr(0, kindEnd), .mode = {}, .content = entry.substr(kindEnd)};
    if (parts.kind != "f" && parts.kind != "d") return parts;
    const auto rest = parts.content.substr(std::min<std::size_t>(1, parts.content.size()));
    const auto modeEnd = std::min(rest.find(' '), rest.size());
    parts.mode = rest.substr(0, modeEnd);
    parts.content = rest.substr(modeEnd);
    return parts;
}

// A file that can't be read counts as a change of the mode only, because its content is unknown.
std::optional<TreeDifferences::ModeChange> modeChange(std::string_view recorded, std::string_view found) {
    const auto was = partsOf(recorded);
    const auto is = partsOf(found);
    if (was.kind != is.kind || was.mode == is.mode) return std::nullopt;
    if (was.content != is.content && is.content != " ?") return std::nullopt;
    return TreeDifferences::ModeChange{.was = std::string(was.mode), .is = std::string(is.mode)};
}

std::string joined(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!name.empty()) path.append("/").append(name);
    return path;
}

}  // namespace

std::optional<TreeListing> TreeListing::of(const std::string& folder, const Digest& digest) {
    TreeListing listing;
    std::vector<std::string> waiting{""};  // folders below `folder`
    while (!waiting.empty()) {
        const std::string below = std::move(waiting.back());
        waiting.pop_back();
        // `folder` itself may be a link, because the node home may be a link. A trailing slash would follow
        // any link.
        constexpr int flags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
        DirectoryReader names(
            UniqueFd(::open(joined(folder, below).c_str(), below.empty() ? flags : flags | O_NOFOLLOW)));
        if (below.empty() && names.hasFailed()) return std::nullopt;
        while (const char* name = names.next()) {
            struct stat found{};
            auto inside = below.empty() ? std::string(name) : joined(below, name);
            const auto entry = joined(folder, inside);
            if (::lstat(entry.c_str(), &found) != 0) continue;  // removed since the folder was read
            if (listing.entries.size() == maxEntries) return std::nullopt;
            listing.entries.emplace(escaped(inside), textOf(entry, found.st_mode, digest));
            if (S_ISDIR(found.st_mode)) waiting.push_back(std::move(inside));
        }
    }
    return listing;
}

std::string TreeListing::text() const {
    std::string text;
    for (const auto& [path, entry] : entries) text.append(entry).append(" ").append(path).append("\n");
    return text;
}

TreeDifferences TreeDifferences::between(const TreeListing& recorded, const TreeListing& found) {
    TreeDifferences differences;
    for (const auto& [path, entry] : recorded.entries) {
        const auto now = found.entries.find(path);
        if (now == found.entries.end()) {
            differences.missing.push_back(path);
        } else if (now->second != entry) {
            differences.changed.push_back(path);
            if (auto mode = modeChange(entry, now->second)) differences.modes.emplace(path, *std::move(mode));
        }
    }
    for (const auto& [path, entry] : found.entries)
        if (!recorded.entries.contains(path)) differences.added.push_back(path);
    return differences;
}

}  // namespace tarnik
