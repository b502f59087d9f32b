#include "core/foundation/UniqueFd.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnik {
namespace {

bool isOpen(int fd) {
    return ::fcntl(fd, F_GETFD) != -1;
}

TEST(UniqueFd, closesOnceHoweverItWasMoved) {
    UniqueFd first(::open("/dev/null", O_RDONLY));
    const int number = first.get();
    UniqueFd second(std::move(first));
    EXPECT_FALSE(first);
    first = std::move(second);
    UniqueFd& same = first;
    first = std::move(same);
    EXPECT_TRUE(isOpen(number));

    errno = ENOENT;
    first.reset();
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(isOpen(number));
    const UniqueFd stranger(::open("/dev/null", O_RDONLY));
    ASSERT_EQ(stranger.get(), number);
    first.reset();
    EXPECT_TRUE(isOpen(number));
}

TEST(UniqueFd, duplicatesAboveTheStandardOnes) {
    const UniqueFd copy = UniqueFd::duplicate(STDOUT_FILENO);
    EXPECT_GT(copy.get(), STDERR_FILENO);
    EXPECT_EQ(::fcntl(copy.get(), F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(UniqueFd::duplicate(-1));
    EXPECT_EQ(errno, EBADF);
}

}  // namespace
}  // namespace tarnik
