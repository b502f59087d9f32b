#include "core/foundation/UniqueFd.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnik {

TEST(UniqueFd, closesOnceAfterMoves) {
    UniqueFd first = UniqueFd::duplicate(STDOUT_FILENO);
    const int number = first.get();
    EXPECT_EQ(::fcntl(number, F_GETFD), FD_CLOEXEC);
    UniqueFd second(std::move(first));
    EXPECT_FALSE(first);
    first = std::move(second);
    errno = ENOENT;
    first.reset();
    EXPECT_EQ(errno, ENOENT);
    const UniqueFd reused(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, number));
    ASSERT_EQ(reused.get(), number);  // the number was closed, but only now
    first.reset();
    EXPECT_NE(::fcntl(number, F_GETFD), -1);
    EXPECT_FALSE(UniqueFd::duplicate(-1));
}

}  // namespace tarnik
