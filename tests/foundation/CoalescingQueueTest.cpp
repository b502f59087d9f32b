#include "core/foundation/CoalescingQueue.h"

#include <gtest/gtest.h>

#include "tests/support/ManualQueue.h"

namespace tarnik {
namespace {

// Tasks append their letter to `ran`; none runs before letGo().
struct Fixture {
    std::shared_ptr<ManualQueue> inner = std::make_shared<ManualQueue>();
    CoalescingQueue queue{inner};
    std::string ran;

    Fixture() { inner->hold(); }
    CoalescingQueue::Task add(char letter) {
        return [this, letter] { ran += letter; };
    }
};

TEST(CoalescingQueue, runsCallsInOrderAndThenTheLatestUpdate) {
    Fixture f;
    f.queue.update(f.add('x'));
    f.queue.call(f.add('a'));
    f.queue.update([&] {
        EXPECT_FALSE(f.queue.isSuperseded());
        f.queue.call(f.add('c'));
        EXPECT_FALSE(f.queue.isSuperseded()) << "a call doesn't supersede it";
        f.queue.update(f.add('z'));
        EXPECT_TRUE(f.queue.isSuperseded());
        f.ran += 'y';
    });
    f.queue.call(f.add('b'));
    f.inner->letGo();
    EXPECT_EQ(f.ran, "abycz");
    EXPECT_FALSE(f.queue.hasEnded());
}

TEST(CoalescingQueue, endDropsEarlierTasksAndIgnoresLaterOnes) {
    Fixture f;
    f.queue.call(f.add('a'));
    f.queue.update(f.add('x'));
    f.queue.end();
    EXPECT_TRUE(f.queue.hasEnded() && f.queue.isSuperseded());
    f.queue.end(f.add('!'));
    f.queue.call(f.add('b'));
    f.queue.update(f.add('y'));
    f.inner->letGo();
    f.queue.close();
    f.queue.end(f.add('?'));
    EXPECT_EQ(f.ran, "!");
}

}  // namespace
}  // namespace tarnik
