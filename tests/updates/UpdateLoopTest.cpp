#include "core/updates/UpdateLoop.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

using enum UpdateInstallAction;

// Runs events on a new loop: r updateReady, o observe after another half of a quiet stretch, m menuClick,
// q quit. Returns the answers.
std::vector<UpdateInstallAction> answers(std::string_view events) {
    UpdateLoop loop;
    TimePoint now;
    std::vector<UpdateInstallAction> said;
    for (const char event : events) {
        if (event == 'r') loop.updateReady();
        if (event == 'o') now = after(now, loop.watch.quietFor / 2);
        if (event == 'o')
            said.push_back(
                loop.observe({.at = {.steady = now, .process = {}}, .nodeHoldsAwake = false}, now));
        if (event == 'm') said.push_back(loop.menuClick());
        if (event == 'q') said.push_back(loop.quit());
    }
    return said;
}

TEST(UpdateLoop, answersEachEvent) {
    const std::pair<const char*, std::vector<UpdateInstallAction>> cases[] = {
        {"oooom", {nothing, nothing, nothing, nothing, checkWithSparkle}},
        {"roooo", {wait, wait, installNow, nothing}},
        {"ooororoooo", {nothing, nothing, nothing, wait, wait, wait, installNow, nothing}},
        {"rmm", {installNow, checkWithSparkle}},
        {"roooroor", {wait, wait, installNow, wait, wait}},
        {"qromq", {nothing, nothing, nothing, nothing}},
        {"rqoomrq", {installAtQuit, nothing, nothing, nothing, nothing}},
    };
    for (const auto& [events, expected] : cases) EXPECT_EQ(answers(events), expected) << events;
    EXPECT_EQ(QuietUpdate::action({.updateReady = true, .quiet = true, .quitting = true}), installAtQuit);
}

}  // namespace
}  // namespace tarnik
