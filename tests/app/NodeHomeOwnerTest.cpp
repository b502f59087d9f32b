#include "app/NodeHomeOwner.h"

#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>
#include <unistd.h>

#include "tests/support/ForkedChild.h"
#include "tests/support/ManualMainThread.h"
#include "tests/support/TemporaryFolder.h"

namespace tarnik {
namespace {

namespace fs = std::filesystem;
using Face = NodeHomeOwner::Face;

struct Fixture {
    TemporaryFolder folder;
    ManualMainThread main;
    std::vector<std::string> log;
    const NodeHome home{.path = folder.path() + "/node"};

    NodeHomeOwner::Deps deps(Face face = Face::window) {
        return {.mainThread = main.record(),
                .log = [this](const std::string& text) { log.push_back(text); },
                .applicationSupport = folder.path(),
                .face = face};
    }
    std::string note() const { return fs::directory_iterator(folder.path() + "/tarnik")->path(); }
};

// The answer: "" if the home is locked, "later" before there is one.
std::string answer = "later";
void take(NodeHomeOwner& owner) {
    answer = "later";
    owner.take([](const std::optional<std::string>& inUse) { answer = inUse.value_or(""); });
}

TEST(NodeHomeOwner, namesTheOtherProgramAfterATimeout) {
    const std::string self = " (process " + std::to_string(::getpid());
    const std::string gone = std::to_string(ForkedChild::waiting().pid()) + " console\n";
    const std::string unknown = "Quit it first.";
    // The face, a note that replaces the owner's, and the parts of the sentence.
    const std::tuple<Face, std::optional<std::string>, std::string, std::string> cases[] = {
        {Face::console, {}, self + ", in a terminal)", "Type quit there first."},
        {Face::window, {}, self + ", with a window)", "Use that one, or quit it first."},
        {Face::service, {}, self + ", in the background)", "End it with tarnik quit first."},
        {Face::window, gone, "", unknown},
        {Face::window, "-1 console\n", "", unknown},
        {Face::window, std::string(100'000, '9'), "", unknown},
    };
    for (const auto& [face, note, who, advice] : cases) {
        Fixture f;
        NodeHomeOwner first(f.home, f.deps(face));
        take(first);
        EXPECT_EQ(answer, "");
        if (note) std::ofstream(f.note()) << *note;
        NodeHomeOwner second(f.home, f.deps());
        take(second);
        f.main.advance(Seconds(2.8));
        EXPECT_EQ(answer, "later");
        f.main.advance(Seconds(0.4));
        EXPECT_EQ(answer,
                  "Another tarnik" + who + " uses the helper's folder " + f.home.path + ". " + advice);
    }
}

TEST(NodeHomeOwner, locksTheHomeWhenTheOtherProgramEnds) {
    Fixture f;
    std::optional<NodeHomeOwner> first(std::in_place, f.home, f.deps());
    take(*first);
    NodeHomeOwner second(f.home, f.deps(Face::console));
    take(second);
    f.main.advance(Seconds(1));
    first.reset();
    EXPECT_TRUE(fs::is_empty(f.folder.path() + "/tarnik")) << "the note is removed";
    f.main.advance(Seconds(0.2));
    EXPECT_EQ(answer, "");
    f.main.advance(Seconds(10));
    EXPECT_EQ(fs::status(f.note()).permissions(), fs::perms(0600));
}

TEST(NodeHomeOwner, continuesWhereLocksAreUnavailable) {
    Fixture f;
    auto deps = f.deps();
    using Failure = NodeHomeLock::Failure;
    const Failure unavailable{Failure::Reason::unavailable, {"flock", ENOLCK}};
    deps.lock = [=](const NodeHome&) { return std::unexpected(unavailable); };
    NodeHomeOwner owner(f.home, deps);
    take(owner);
    EXPECT_EQ(answer, "");
    EXPECT_EQ(f.log.size(), 1U);
}

}  // namespace
}  // namespace tarnik
