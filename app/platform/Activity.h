#pragma once

namespace tarnik {

// States whether this program or one of its children works, so that the system must not slow it down.
enum class Activity { idle, busy };

}  // namespace tarnik
