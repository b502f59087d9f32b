#include "core/foundation/SerialQueue.h"

#include <atomic>
#include <future>
#include <optional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/ManualQueue.h"

namespace tarnik {
namespace {

using namespace std::chrono_literals;

constexpr auto limit = 20s;

// Both kinds of queue promise the same order.
struct Order {
    std::vector<int> ran;
    std::promise<void> last;
    SerialQueue::Timer calledOff = 0;

    void schedule(SerialQueue& queue) {
        queue.run([this, &queue] {
            queue.postAfter(Seconds(0.3), [this] {
                ran.push_back(5);
                last.set_value();
            });
            const auto never = queue.postAfter(Seconds(0.01), [this] { ran.push_back(-1); });
            // These two are due at the same moment on the hand-moved clock; the first calls the second off.
            queue.postAfter(Seconds(0.02), [this, &queue] {
                ran.push_back(4);
                queue.cancel(calledOff);
            });
            calledOff = queue.postAfter(Seconds(0.02), [this] { ran.push_back(-2); });
            queue.post([this] { ran.push_back(2); });
            queue.postAfter(Seconds(-1), [this] { ran.push_back(3); });
            queue.cancel(never);
            ran.push_back(1);
        });
    }
};

TEST(SerialQueue, runsInOrderAndWhatIsDueFirst) {
    const std::vector<int> expected{1, 2, 3, 4, 5};
    {
        Order order;
        const auto queue = SerialQueue::withThread("tarnik.test");
        order.schedule(*queue);
        ASSERT_EQ(order.last.get_future().wait_for(limit), std::future_status::ready);
        EXPECT_EQ(order.ran, expected);
    }
    Order order;
    ManualQueue queue;
    order.schedule(queue);
    EXPECT_EQ(order.ran, (std::vector{1, 2, 3}));
    queue.advance(Seconds(0.3));
    EXPECT_EQ(order.ran, expected);
}

TEST(SerialQueue, runsOneAtATimeForAllThreads) {
    const auto queue = SerialQueue::withThread("tarnik.test");
    long counted = 0;  // unguarded on purpose
    std::vector<std::thread> callers;
    for (int caller = 0; caller < 4; ++caller) {
        callers.emplace_back([&] {
            for (int i = 0; i < 500; ++i) {
                queue->post([&] { ++counted; });
                long seen = 0;
                queue->run([&] { seen = ++counted; });
                EXPECT_GT(seen, i);
            }
        });
    }
    for (auto& caller : callers) caller.join();
    EXPECT_EQ(counted, 4 * 500 * 2);
}

TEST(SerialQueue, closeWaitsForTheRunningTaskAndDropsTheRest) {
    const auto queue = SerialQueue::withThread("tarnik.test");
    std::promise<void> running;
    std::promise<void> goOn;
    std::atomic<bool> finished = false;
    std::atomic<int> late = 0;
    queue->post([&] {
        running.set_value();
        goOn.get_future().wait();
        finished = true;
    });
    queue->post([&] { ++late; });
    queue->postAfter(Seconds(3600), [&] { ++late; });
    running.get_future().wait();
    // A run that gets dropped comes back, as does one on a closed queue.
    auto dropped = std::async(std::launch::async, [&] { queue->run([&] { ++late; }); });
    auto closed = std::async(std::launch::async, [&] {
        queue->close();
        return finished.load();
    });
    ASSERT_EQ(dropped.wait_for(limit), std::future_status::ready);
    EXPECT_EQ(closed.wait_for(0s), std::future_status::timeout);
    goOn.set_value();
    ASSERT_EQ(closed.wait_for(limit), std::future_status::ready);
    EXPECT_TRUE(closed.get());

    queue->post([&] { ++late; });
    EXPECT_EQ(queue->postAfter(Seconds(0), [&] { ++late; }), 0U);
    queue->run([&] { ++late; });
    EXPECT_EQ(late, 0);
}

TEST(SerialQueue, goesFromWithinItsOwnTask) {
    std::promise<void> gone;
    {
        auto queue = SerialQueue::withThread("tarnik.test");
        std::promise<void> handedOver;
        auto* raw = queue.get();
        raw->post([&gone, wait = handedOver.get_future().share(),
                   holder = std::make_shared<decltype(queue)>(queue)] {
            wait.wait();
            (*holder)->close();
            (*holder)->post([] { ADD_FAILURE(); });
            holder->reset();
            gone.set_value();
        });
        queue.reset();
        handedOver.set_value();
    }
    ASSERT_EQ(gone.get_future().wait_for(limit), std::future_status::ready);
}

// Calls back into the queue when it is dropped.
struct CallsBack {
    std::shared_ptr<SerialQueue> queue;
    ~CallsBack() {
        queue->cancel(queue->postAfter(Seconds(3600), [] {}));
    }
};

TEST(SerialQueue, dropsTasksWithoutItsLock) {
    for (const auto& queue : {SerialQueue::withThread("tarnik.test"),
                              std::shared_ptr<SerialQueue>(std::make_shared<ManualQueue>())}) {
        const auto dropOneWay = [&](auto drop) {
            auto held = std::shared_ptr<CallsBack>(new CallsBack{queue});
            const auto timer = queue->postAfter(Seconds(3600), [held] {});
            std::promise<void> dropped;
            held.reset();
            auto done = std::async(std::launch::async, [&] { drop(timer); });
            ASSERT_EQ(done.wait_for(limit), std::future_status::ready);
        };
        dropOneWay([&](SerialQueue::Timer timer) { queue->cancel(timer); });
        dropOneWay([&](SerialQueue::Timer) { queue->close(); });
    }
}

}  // namespace
}  // namespace tarnik
