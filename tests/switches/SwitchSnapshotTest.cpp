#include "core/switches/SwitchSnapshot.h"

#include <gtest/gtest.h>

namespace tarnik {

TEST(SwitchSnapshot, findsAStaleSwitch) {
    using enum SwitchStatus;
    const std::tuple<SwitchSnapshot, bool, SwitchStatus, SwitchStatus> cases[] = {
        {{}, false, notYet, notYet},
        {{.screenRecording = true}, false, mayBeStale, on},
        {{}, true, mayBeStale, notYet},  // it was on once
        {{.accessibility = true}, true, on, notYet},
        {{.accessibility = true, .screenRecording = true}, true, on, on},
    };
    for (const auto& [snapshot, wasOnBefore, accessibility, screenRecording] : cases) {
        EXPECT_EQ(snapshot.status(Switch::accessibility, wasOnBefore), accessibility);
        EXPECT_EQ(snapshot.status(Switch::screenRecording, wasOnBefore), screenRecording);
        EXPECT_EQ(snapshot.allOn(), accessibility == on && screenRecording == on);
    }
}

TEST(Switch, hasItsOwnPageInTheSettings) {
    EXPECT_TRUE(settingsURL(Switch::accessibility).ends_with("?Privacy_Accessibility"));
    EXPECT_TRUE(settingsURL(Switch::screenRecording).ends_with("?Privacy_ScreenCapture"));
}

}  // namespace tarnik
