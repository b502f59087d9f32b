#include "app/platform/linux/BusSingleInstance.h"

#include <gtest/gtest.h>

#include "tests/platform/FakeService.h"
#include "tests/platform/PrivateBus.h"
#include "tests/support/ManualMainThread.h"

namespace tarnik {

using Outcome = SingleInstance::Outcome;
using Links = std::vector<std::string>;

constexpr BusSingleInstance::Timeouts quick{.handOver = std::chrono::milliseconds(200),
                                            .end = std::chrono::milliseconds(200)};

TEST(BusSingleInstance, losesNoLinkToAnOwnerThatDoesNotAcceptIt) {
    enum class Owner { ends, isSilent, lacksTheInterface, neverEnds };
    const Links kept{"tarnik://1"};
    const std::tuple<Owner, Outcome, Links> cases[] = {
        {Owner::ends, Outcome::primary, kept},
        {Owner::isSilent, Outcome::handedOver, {}},  // it may still use the link
        {Owner::lacksTheInterface, Outcome::unavailable, kept},
        {Owner::neverEnds, Outcome::unavailable, kept},
    };
    for (const auto& c : cases) {
        const Owner owner = std::get<0>(c);
        const PrivateBus bus;
        BusProgram other(bus);
        std::unique_ptr<FakeService> service;
        const auto vanish = [&] {
            service.reset();
            other.leaveBus();
        };
        const auto answer = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
            if (owner == Owner::lacksTheInterface)
                return call.createErrorReply(QDBusError::UnknownInterface, "");
            if (owner == Owner::neverEnds && call.member() == "Open")
                return call.createErrorReply("com.tarnik.node.Error.Ending", "");
            if (owner == Owner::ends) vanish();  // destroys this lambda
            return std::nullopt;
        };
        other.run([&] { service = std::make_unique<FakeService>(other.bus(), "com.tarnik.node", answer); });

        ManualMainThread mainThread;
        const auto requests = std::make_shared<OpenRequests>(mainThread.record());
        Links links;
        requests->onLink([&](const std::string& opened) { links.push_back(opened); });
        const auto outcome =
            BusSingleInstance(bus.connect(), requests, "token", quick).acquire({.link = "tarnik://1"});
        EXPECT_EQ(outcome, std::get<1>(c)) << static_cast<int>(owner);
        EXPECT_EQ(links, Links()) << "acquire itself delivers no link";
        mainThread.run();
        EXPECT_EQ(links, std::get<2>(c)) << static_cast<int>(owner);
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
    requests->onSecondOpen([&] { ++secondOpens; });
    requests->open("last");
    EXPECT_EQ(links, Links());
    mainThread.run();
    ASSERT_EQ(links.size(), OpenRequests::maxWaiting);
    EXPECT_EQ(links.front(), "5");
    EXPECT_EQ(links.back(), "last");
    EXPECT_EQ(secondOpens, 1);
    requests->open("at once");
    EXPECT_EQ(links.back(), "at once");
}

}  // namespace tarnik
