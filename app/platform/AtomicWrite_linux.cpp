#include "app/platform/AtomicWrite.h"

#include <cstdio>
#include <cstdlib>

#include <fcntl.h>
#include <unistd.h>

#include "core/foundation/Paths.h"
#include "core/foundation/UniqueFd.h"

namespace tarnik {

std::expected<void, SystemError> writeFileAtomically(const std::string& path, std::string_view bytes) {
    if (auto folder = createFolders(parentFolder(path), 0700); !folder) return folder;
    std::string fresh = path + ".XXXXXX";
    const UniqueFd file(::mkostemp(fresh.data(), O_CLOEXEC));  // mode 0600
    if (!file) return std::unexpected(SystemError::last("open", fresh));

    const auto failed = [&](const char* call) {
        auto error = SystemError::last(call, fresh);
        ::unlink(fresh.c_str());
        return std::unexpected(std::move(error));
    };
    if (writeAll(file.get(), bytes) < bytes.size()) return failed("write");
    if (::fsync(file.get()) != 0) return failed("fsync");
    if (::rename(fresh.c_str(), path.c_str()) != 0) return failed("rename");
    return {};
}

}  // namespace tarnik
