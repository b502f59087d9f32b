#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnik {

// The file that notes what each launch decided, for the person who is asked why: relocation.log in the
// application's folder of application support, private to the user.
//
// Nothing is ever reported: a line that can't be written is lost. Only a regular file of ours is written to,
// through no link and without waiting for anybody. Not for two threads at once.
class RelocationRecord {
public:
    static constexpr std::size_t capBytes = 65'536;

    explicit RelocationRecord(const std::string& applicationSupport);

    // Adds the line and a line feed. Beyond the cap the newest half is kept, whole lines only. A line of more
    // than half the cap is lost.
    void append(std::string_view line) const;

private:
    const std::string folder_;
};

}  // namespace tarnik
