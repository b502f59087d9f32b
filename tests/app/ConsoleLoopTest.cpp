#include "app/console/ConsoleLoop.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnik {

TEST(ConsoleLoop, leavesInputUnreadUntilThereIsSomethingToActOnIt) {
    auto input = Spawner::pipe().value();
    ASSERT_EQ(::write(input.writeEnd.get(), "status\n", 7), 7);
    const auto loop = std::make_shared<ConsoleLoop>(input.readEnd.get(), Spawner::pipe().value());
    bool launched = false;
    const auto launch = loop->mainThread().repeat(Seconds(0.02), [&] {
        launched = true;
        loop->openInput();
    });
    const auto onLine = [&](const std::string& line) {
        EXPECT_TRUE(launched && line == "status");
        loop->quit();
    };
    loop->run({.onLine = onLine, .onLineTooLong = [] {}, .onEndOfInput = [] {}});
}

}  // namespace tarnik
