#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// The file relocation.log, which records the relocation decision of each launch for support. It is private to
// the user, in the application's folder below the application support folder.
//
// Failures are ignored: a line that can't be written is lost. Writes only to a regular file that we own,
// never through a link, and never blocks on a pipe or device. Not thread-safe.
class RelocationRecord {
public:
    static constexpr std::size_t capBytes = 65'536;

    explicit RelocationRecord(const std::string& applicationSupport);

    // Appends the line and a line feed. A file that would exceed the cap keeps its newest half, in whole
    // lines. A line of more than half the cap is dropped.
    void append(std::string_view line) const;

private:
    const std::string folder_;
};

}  // namespace tarnik
