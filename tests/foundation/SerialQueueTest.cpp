#include "core/foundation/SerialQueue.h"

#include <atomic>
#include <future>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr auto limit = 20s;

TEST(SerialQueue, runsTasksInOrderOfTheirDueTime) {
    std::vector<int> ran;
    const auto add = [&ran](int number) { return [&ran, number] { ran.push_back(number); }; };
    const auto queue = SerialQueue::withThread("tarnik.test");
    queue->run([&] {
        const auto never = queue->postAfter(Seconds(0.01), add(-1));
        queue->postAfter(Seconds(0.03), add(4));
        queue->post(add(2));
        queue->postAfter(Seconds(-1), add(3));
        queue->cancel(never);
        ran.push_back(1);
    });
    std::promise<void> later;
    queue->postAfter(Seconds(0.06), [&] { later.set_value(); });
    ASSERT_EQ(later.get_future().wait_for(limit), std::future_status::ready);
    queue->run([&] { ran.push_back(5); });
    EXPECT_EQ(ran, (std::vector{1, 2, 3, 4, 5}));
}

TEST(SerialQueue, closeWaitsForTheRunningTaskAndDropsTheRest) {
    const auto queue = SerialQueue::withThread("tarnik.test");
    std::promise<void> running, proceed;
    std::atomic<bool> finished = false;
    std::atomic<int> late = 0;
    const auto isLate = [&] { ++late; };
    queue->post([&] {
        running.set_value();
        proceed.get_future().wait();
        finished = true;
    });
    queue->post(isLate);
    queue->postAfter(Seconds(3600), isLate);
    running.get_future().wait();
    // run() returns when its task is dropped, and on a closed queue.
    auto dropped = std::async(std::launch::async, [&] { queue->run(isLate); });
    auto closed = std::async(std::launch::async, [&] { queue->close(); });
    ASSERT_EQ(dropped.wait_for(limit), std::future_status::ready);
    EXPECT_EQ(closed.wait_for(0s), std::future_status::timeout);
    proceed.set_value();
    ASSERT_EQ(closed.wait_for(limit), std::future_status::ready);
    EXPECT_TRUE(finished);

    queue->post(isLate);
    EXPECT_EQ(queue->postAfter(Seconds(0), isLate), 0U);
    queue->run(isLate);
    EXPECT_EQ(late, 0);
}

TEST(SerialQueue, canBeReleasedByItsOwnTask) {
    auto queue = SerialQueue::withThread("tarnik.test");
    std::promise<void> handedOver;
    std::promise<void> gone;
    queue->post([&, holder = std::make_shared<decltype(queue)>(queue)] {
        handedOver.get_future().wait();
        (*holder)->close();
        (*holder)->post([] { ADD_FAILURE(); });
        holder->reset();
        gone.set_value();
    });
    queue.reset();
    handedOver.set_value();
    ASSERT_EQ(gone.get_future().wait_for(limit), std::future_status::ready);
}

// Calls the queue when it is destroyed.
struct CallsBack {
    SerialQueue& queue;
    ~CallsBack() {
        queue.cancel(queue.postAfter(Seconds(3600), [] {}));
    }
};

TEST(SerialQueue, destroysDroppedTasksWithoutItsLock) {
    const auto queue = SerialQueue::withThread("tarnik.test");
    for (const bool closes : {false, true}) {
        const auto timer =
            queue->postAfter(Seconds(3600), [held = std::shared_ptr<CallsBack>(new CallsBack{*queue})] {});
        auto done = std::async(std::launch::async, [&] { closes ? queue->close() : queue->cancel(timer); });
        ASSERT_EQ(done.wait_for(limit), std::future_status::ready);
    }
}

}  // namespace
}  // namespace tarnik
