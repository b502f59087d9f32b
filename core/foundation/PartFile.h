#pragma once

#include <string>
#include <string_view>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A private file beside `destination`, with a name of its own, in which a download grows. Removed with this
// object unless it was moved into place. On failure the operations leave errno set.
class PartFile {
public:
    explicit PartFile(const std::string& destination);
    PartFile(const PartFile&) = delete;
    PartFile& operator=(const PartFile&) = delete;
    ~PartFile();

    bool isOpen() const { return static_cast<bool>(file_); }
    bool append(std::string_view bytes) const;
    bool moveTo(const std::string& destination);

private:
    const std::string path_;
    UniqueFd file_;
    bool exists_;
};

}  // namespace tarnik
