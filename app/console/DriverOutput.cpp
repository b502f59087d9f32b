#include "app/console/DriverOutput.h"

#include <memory>
#include <string>
#include <utility>

#include "core/foundation/TextCleanup.h"
#include "core/process/FDReader.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

constexpr std::size_t longestLine = 2000;

}  // namespace

UniqueFd attachDriverOutput(const MainThread& mainThread, ConsoleOutput& output) {
    auto pipe = Spawner::pipe();
    if (!pipe) return {};
    auto partial = std::make_shared<std::string>();
    const auto reader = FDReader::start(
        std::move(pipe->readEnd), [post = mainThread.post, &output, partial](std::string_view chunk) {
            *partial += chunk;
            for (auto end = partial->find('\n'); end != std::string::npos; end = partial->find('\n')) {
                const auto line = sanitizedLine(std::string_view(*partial).substr(0, end), longestLine);
                partial->erase(0, end + 1);
                post([&output, line] { output.line("driver", line); });
            }
            if (partial->size() > longestLine) partial->clear();
        });
    return reader ? std::move(pipe->writeEnd) : UniqueFd();
}

}  // namespace tarnik
