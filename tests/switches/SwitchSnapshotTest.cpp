#include "core/switches/SwitchSnapshot.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(SwitchSnapshot, findsAStaleSwitch) {
    using enum SwitchStatus;
    struct Case {
        const char* why;
        SwitchSnapshot snapshot;
        bool wasOnBefore;
        SwitchStatus accessibility, screenRecording;
    };
    const Case cases[] = {
        {"a first run", {}, false, notYet, notYet},
        {"only the screen", {.screenRecording = true}, false, mayBeStale, on},
        {"off again after it was on once", {}, true, mayBeStale, notYet},
        {"only accessibility", {.accessibility = true}, true, on, notYet},
        {"both", {.accessibility = true, .screenRecording = true}, true, on, on},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(c.snapshot.status(Switch::accessibility, c.wasOnBefore), c.accessibility) << c.why;
        EXPECT_EQ(c.snapshot.status(Switch::screenRecording, c.wasOnBefore), c.screenRecording) << c.why;
        EXPECT_EQ(c.snapshot.allOn(), c.accessibility == on && c.screenRecording == on) << c.why;
    }
}

TEST(Switch, hasItsOwnPageInTheSettings) {
    EXPECT_TRUE(settingsURL(Switch::accessibility).ends_with("?Privacy_Accessibility"));
    EXPECT_TRUE(settingsURL(Switch::screenRecording).ends_with("?Privacy_ScreenCapture"));
}

}  // namespace
}  // namespace tarnik
