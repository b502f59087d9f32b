#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// The file relocation.log. It records each launch's relocation decision for support. It is private to the
// user, in the application's folder below the application support folder.
//
// Failures are ignored: a line that can't be written is lost. Writes only to a regular file that this user
// owns, and not through a symbolic link. Doesn't block on a pipe or a device. Not thread-safe.
class RelocationRecord {
public:
    static constexpr std::size_t capBytes = 65'536;

    explicit RelocationRecord(const std::string& applicationSupport);

    // Appends the line and a line feed. If the file would exceed capBytes, keeps only its newest whole lines,
    // at most half of capBytes. A line of half of capBytes or more is dropped.
    void append(std::string_view line) const;

private:
    const std::string folder_;
};

}  // namespace tarnik
