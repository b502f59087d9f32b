#include "app/platform/linux/BusSingleInstance.h"

#include <thread>

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"
#include "tests/support/ManualMainThread.h"

namespace tarnik {
namespace {

using Outcome = SingleInstance::Outcome;
using Links = std::vector<std::string>;

constexpr BusSingleInstance::Timeouts quick{.handOver = std::chrono::milliseconds(200),
                                            .end = std::chrono::milliseconds(200)};
constexpr const char* name = "com.tarnik.node";

// A second instance and the links that it receives itself.
struct SecondStart {
    ManualMainThread mainThread;
    std::shared_ptr<OpenRequests> requests = std::make_shared<OpenRequests>(mainThread.record());
    Links links;

    Outcome acquire(const QDBusConnection& bus, const SingleInstance::LaunchRequest& start,
                    BusSingleInstance::Timeouts bounds = {}) {
        requests->onLink([this](const std::string& opened) { links.push_back(opened); });
        const auto outcome = BusSingleInstance(bus, requests, "token", bounds).acquire(start);
        EXPECT_EQ(links, Links()) << "acquire itself delivers no link";
        mainThread.run();
        return outcome;
    }
};

TEST(BusSingleInstance, losesNoLinkToAnOwnerThatDoesNotAcceptIt) {
    using Vanish = std::function<void()>;
    using Answer = std::function<std::optional<QDBusMessage>(const QDBusMessage&, const Vanish&)>;
    const auto noReply = std::optional<QDBusMessage>();
    struct Case {
        const char* why;
        Answer answer;
        Outcome outcome;
        Links links;
    };
    const Case cases[] = {
        {"it ends without a reply",
         [&](auto&, auto& vanish) {
             vanish();
             return noReply;
         },
         Outcome::primary,
         {"tarnik://1"}},
        {"it does not reply in time and may still use the link", [&](auto&, auto&) { return noReply; },
         Outcome::handedOver, Links()},
        {"it lacks the interface",
         [](auto& call, auto&) { return call.createErrorReply(QDBusError::UnknownInterface, ""); },
         Outcome::unavailable,
         {"tarnik://1"}},
        {"it never ends",
         [&](auto& call, auto&) {
             return call.member() == "Open" ? call.createErrorReply("com.tarnik.node.Error.Ending", "")
                                            : noReply;
         },
         Outcome::unavailable,
         {"tarnik://1"}},
    };
    for (const auto& c : cases) {
        const PrivateBus bus;
        BusProgram other(bus);
        std::unique_ptr<FakeService> service;
        const Vanish vanish = [&] {
            other.post([&] {
                service.reset();
                other.leaveBus();
            });
        };
        other.run([&] {
            const auto answer = [&](const QDBusMessage& call) { return c.answer(call, vanish); };
            service = std::make_unique<FakeService>(other.bus(), name, answer);
        });
        SecondStart second;
        EXPECT_EQ(second.acquire(bus.connect(), {.link = "tarnik://1"}, quick), c.outcome) << c.why;
        EXPECT_EQ(second.links, c.links) << c.why;
        other.run([&] { service.reset(); });
    }
}

TEST(OpenRequests, queuesRequestsUntilTheirHandlerExists) {
    ManualMainThread mainThread;
    const auto requests = std::make_shared<OpenRequests>(mainThread.record());
    Links links;
    int secondOpens = 0;
    for (int i = 0; i < 20; ++i) requests->open(std::to_string(i));
    requests->secondOpen();
    requests->onLink([&](const std::string& link) { links.push_back(link); });
    requests->open("last");
    EXPECT_EQ(links, Links());
    mainThread.run();
    ASSERT_EQ(links.size(), OpenRequests::maxWaiting);
    EXPECT_EQ(links.front(), "5");
    EXPECT_EQ(links.back(), "last");

    requests->onSecondOpen([&] { ++secondOpens; });
    mainThread.run();
    EXPECT_EQ(secondOpens, 1);
    requests->open("at once");
    EXPECT_EQ(links.back(), "at once");
}

}  // namespace
}  // namespace tarnik
