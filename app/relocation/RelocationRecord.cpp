#include "app/relocation/RelocationRecord.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/foundation/Files.h"
#include "core/foundation/PrivateFolder.h"
#include "core/foundation/TarnikIdentity.h"

namespace tarnik {

namespace {

constexpr const char* fileName = "relocation.log";

// Returns the last whole lines of the file, at most half of capBytes.
std::string newestHalf(const UniqueFd& file, off_t size) {
    constexpr std::size_t half = RelocationRecord::capBytes / 2;
    std::string bytes(half, '\0');
    const ssize_t count = ::pread(file.get(), bytes.data(), bytes.size(), size - static_cast<off_t>(half));
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    const auto end = bytes.find('\n');
    return end == std::string::npos ? std::string() : bytes.substr(end + 1);
}

}  // namespace

RelocationRecord::RelocationRecord(const std::string& applicationSupport)
    : folder_(applicationSupport + "/" + std::string(TarnikIdentity::appName)) {}

void RelocationRecord::append(std::string_view line) const {
    if (line.size() >= capBytes / 2) return;
    const auto folder = PrivateFolder::open(folder_);
    if (!folder) return;
    const UniqueFd file = folder->openFile(fileName, O_CREAT | O_APPEND);
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0) return;

    std::string text(line);
    text += '\n';
    if (static_cast<std::size_t>(status.st_size) + text.size() <= capBytes) {
        writeAll(file.get(), text);
        return;
    }
    folder->replace(fileName, newestHalf(file, status.st_size) + text);
}

}  // namespace tarnik
