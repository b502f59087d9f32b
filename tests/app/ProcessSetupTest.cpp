#include "app/ProcessSetup.h"

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

TEST(ProcessSetupDeathTest, exitsWithAMessageIfNoThreadCanBeStarted) {
    const std::function<void()> makeThread = [] {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    };
    const auto start = [&]() noexcept {
        setUpProcess();
        makeThread();
    };
    EXPECT_EXIT(start(), testing::ExitedWithCode(EXIT_FAILURE),
                "^tarnik: the system can.t create another thread");
}

TEST(ProcessSetupDeathTest, endsInSpiteOfACallThatHangs) {
    const auto hang = [] {
        endWithin(Seconds(0.01), 7);
        ::pause();
    };
    EXPECT_EXIT(hang(), testing::ExitedWithCode(7), "");
}

// No other test checks the numbers of new descriptors.
TEST(ProcessSetup, opensTheStandardDescriptors) {
    const std::array saved{UniqueFd::duplicate(0), UniqueFd::duplicate(1), UniqueFd::duplicate(2)};
    for (const int fd : {0, 1, 2}) ::close(fd);
    setUpProcess();
    const auto pipe = Spawner::pipe();
    for (int fd = 0; const auto& standard : saved) ::dup2(standard.get(), fd++);
    ASSERT_TRUE(pipe);
    EXPECT_GT(std::min(pipe->readEnd.get(), pipe->writeEnd.get()), 2);
}

}  // namespace tarnik
