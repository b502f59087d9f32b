// For any pid file: a process id is read if and only if the file is one decimal number above zero with
// optional white space around it.

#include <algorithm>
#include <fstream>
#include <limits>
#include <string>

#include "core/driver/DriverSocketDirectory.h"
#include "core/foundation/TextCleanup.h"
#include "tests/fuzz/Require.h"
#include "tests/support/TemporaryFolder.h"

namespace {

using namespace tarnik;

std::optional<pid_t> pidByRule(std::string_view text) {
    constexpr std::size_t longest = 63;  // a longer file is not a pid file
    if (text.size() > longest) return std::nullopt;
    std::int64_t number = 0;
    for (const char c : trimWhitespace(text)) {
        if (c < '0' || c > '9' || number > std::numeric_limits<pid_t>::max()) return std::nullopt;
        number = 10 * number + (c - '0');
    }
    if (number < 1 || number > std::numeric_limits<pid_t>::max()) return std::nullopt;
    return static_cast<pid_t>(number);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const TemporaryFolder folder;
    static const DriverSocketDirectory directory = DriverSocketDirectory::create(folder.path()).value();
    const std::string_view text = fuzz::textOf(data, size);
    std::ofstream(directory.pidFilePath()) << text;
    fuzz::require(directory.readProcessIdentifier() == pidByRule(text));
    return 0;
}
