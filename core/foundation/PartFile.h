#pragma once

#include <string>
#include <string_view>

#include "core/foundation/UniqueFd.h"

namespace tarnik {

// A temporary file for a download, private to this user, in the folder of `destination`. The destructor
// removes the file unless moveTo() has succeeded. A failed operation sets errno.
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
