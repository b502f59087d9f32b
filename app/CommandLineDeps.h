#pragma once

#include "app/CommandLine.h"
#include "app/model/AppModelDeps.h"

namespace tarnik {

// What the model asks of the outside in this run: the real things, but for what the command line chose.
AppModelDeps modelDeps(const CommandLine& line, AppPlatform platform, const BackgroundTasks& work);

}  // namespace tarnik
