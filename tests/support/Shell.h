#pragma once

#include <string>

#include <gtest/gtest.h>

#include "core/process/Spawner.h"

namespace tarnik {

// Runs the shell script in the folder.
inline void shell(const std::string& folder, const std::string& script) {
    const auto ran =
        Spawner::run({"/bin/sh", {"-ec", "cd \"$0\"; " + script, folder}, {}, Seconds(20), 1000});
    ASSERT_TRUE(ran && ran->status.succeeded()) << script << ": " << (ran ? ran->text : "");
}

}  // namespace tarnik
