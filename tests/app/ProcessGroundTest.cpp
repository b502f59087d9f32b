#include "app/ProcessGround.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <system_error>

#include <gtest/gtest.h>
#include <unistd.h>

#include "core/foundation/UniqueFd.h"
#include "core/process/Spawner.h"

namespace tarnik {
namespace {

TEST(ProcessGroundDeathTest, endsWithASentenceWhereNoThreadCanBeMade) {
    const std::function<void()> makeThread = [] {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    };
    const auto start = [&]() noexcept {
        layProcessGround();
        makeThread();
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(EXIT_FAILURE), "^tarnik: the system has no thread");
}

// Nothing else looks where a descriptor lands.
TEST(ProcessGround, keepsTheStandardDescriptorsFromWhatIsOpenedLater) {
    const std::array saved{UniqueFd::duplicate(0), UniqueFd::duplicate(1), UniqueFd::duplicate(2)};
    for (const int fd : {0, 1, 2}) ::close(fd);
    layProcessGround();
    const auto pipe = Spawner::pipe();
    for (int fd = 0; const auto& standard : saved) ::dup2(standard.get(), fd++);
    ASSERT_TRUE(pipe);
    EXPECT_GT(std::min(pipe->readEnd.get(), pipe->writeEnd.get()), 2);
}

}  // namespace
}  // namespace tarnik
