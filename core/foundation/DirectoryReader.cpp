#include "core/foundation/DirectoryReader.h"

#include <cerrno>
#include <string_view>

namespace tarnik {

DirectoryReader::DirectoryReader(UniqueFd directory)
    : stream_(directory ? ::fdopendir(directory.get()) : nullptr), failed_(!stream_) {
    if (stream_) directory.release();  // closedir(3) closes the descriptor
}

const char* DirectoryReader::next() {
    while (!failed_) {
        errno = 0;
        const dirent* entry = ::readdir(stream_.get());
        if (entry == nullptr) {
            failed_ = errno != 0;
            return nullptr;
        }
        const char* name = &entry->d_name[0];
        if (std::string_view(name) != "." && std::string_view(name) != "..") return name;
    }
    return nullptr;
}

}  // namespace tarnik
