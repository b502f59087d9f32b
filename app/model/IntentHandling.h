#pragma once

#include <string>

#include "app/model/AppModel.h"
#include "app/model/WindowIntent.h"

namespace tarnik {

// Does what the person asked for; `pasted` is what stands in the link field. Main thread.
void performIntent(const WindowIntent& intent, const std::string& pasted, AppModel& model);

}  // namespace tarnik
