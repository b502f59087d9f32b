#include "app/console/ConsoleLoop.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnik {
namespace {

TEST(ConsoleLoop, leavesInputUnreadUntilThereIsSomethingToActOnIt) {
    auto input = Spawner::pipe().value();
    ASSERT_EQ(::write(input.writeEnd.get(), "status\n", 7), 7);
    const auto loop = std::make_shared<ConsoleLoop>(input.readEnd.get(), Spawner::pipe().value());
    bool launched = false;
    const auto main = loop->mainThread();
    const auto launch = main.repeat(Seconds(0.05), [&] {
        launched = true;
        loop->openInput();
    });
    loop->run({.onLine =
                   [&](const std::string& line) {
                       EXPECT_TRUE(launched);
                       EXPECT_EQ(line, "status");
                       loop->quit();
                   },
               .onLineTooLong = [] {},
               .onEndOfInput = [] {}});
}

}  // namespace
}  // namespace tarnik
