#include "core/foundation/PartFile.h"

#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/Uuid.h"

namespace tarnik {

PartFile::PartFile(const std::string& destination)
    : path_(destination + "." + randomUuid() + ".part"),
      file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600)),
      exists_(static_cast<bool>(file_)) {}

PartFile::~PartFile() {
    if (exists_) ::unlink(path_.c_str());
}

bool PartFile::append(std::string_view bytes) const {
    return writeAll(file_.get(), bytes) == bytes.size();
}

bool PartFile::moveTo(const std::string& destination) {
    if (::close(file_.release()) != 0) return false;  // some file systems report a full disk only here
    if (::rename(path_.c_str(), destination.c_str()) != 0) return false;
    exists_ = false;
    return true;
}

}  // namespace tarnik
