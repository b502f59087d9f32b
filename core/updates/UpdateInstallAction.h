#pragma once

namespace tarnik {

// What is to be done about an update that may be waiting.
enum class UpdateInstallAction {
    nothing,
    installNow,
    wait,              // for a quiet moment
    installAtQuit,     // which the update framework does by itself
    checkWithSparkle,  // let the update framework look for one, with its own windows
};

}  // namespace tarnik
