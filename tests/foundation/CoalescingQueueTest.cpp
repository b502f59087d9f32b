#include "core/foundation/CoalescingQueue.h"

#include <string>

#include <gtest/gtest.h>

#include "tests/support/ManualQueue.h"

namespace tarnik {
namespace {

// Calls append their letter to `ran`; none runs before letGo().
struct Fixture {
    std::shared_ptr<ManualQueue> inner = std::make_shared<ManualQueue>();
    CoalescingQueue queue{inner};
    std::string ran;

    Fixture() { inner->hold(); }
    CoalescingQueue::Task add(const char* name) {
        return [this, name] { ran += name; };
    }
};

TEST(CoalescingQueue, runsCallsInOrderAndTheLatestUpdateBehindThem) {
    Fixture f;
    f.queue.update(f.add("x"));
    f.queue.call(f.add("a"));
    f.queue.update(f.add("y"));
    f.queue.call(f.add("b"));
    f.inner->letGo();
    EXPECT_EQ(f.ran, "aby");
    f.queue.update(f.add("z"));
    EXPECT_EQ(f.ran, "abyz");
}

TEST(CoalescingQueue, theEndOvertakesAllAndIgnoresWhatComesLater) {
    Fixture f;
    f.queue.call(f.add("a"));
    f.queue.update(f.add("x"));
    f.queue.end();
    f.queue.end(f.add("!"));
    f.queue.call(f.add("b"));
    f.queue.update(f.add("y"));
    f.inner->letGo();
    EXPECT_EQ(f.ran, "!");
    f.queue.close();
    f.queue.end(f.add("?"));
    EXPECT_EQ(f.ran, "!");
}

TEST(CoalescingQueue, theRunningCallLearnsWhatWaitsForIt) {
    Fixture f;
    f.queue.update([&] {
        EXPECT_FALSE(f.queue.isSuperseded());
        f.queue.call(f.add("a"));
        EXPECT_FALSE(f.queue.isSuperseded()) << "its result stays valid";
        f.queue.update(f.add("x"));
        EXPECT_TRUE(f.queue.isSuperseded());
    });
    f.queue.call([&] {
        EXPECT_TRUE(f.queue.isSuperseded());
        EXPECT_FALSE(f.queue.hasEnded());
    });
    f.inner->letGo();
    EXPECT_EQ(f.ran, "ax");
    f.queue.end();
    EXPECT_TRUE(f.queue.hasEnded() && f.queue.isSuperseded());
}

}  // namespace
}  // namespace tarnik
