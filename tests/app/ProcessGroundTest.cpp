#include "app/ProcessGround.h"

#include <cstdlib>
#include <functional>
#include <system_error>

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace tarnik
