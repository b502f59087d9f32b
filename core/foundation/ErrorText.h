#pragma once

#include <string>
#include <system_error>

namespace tarnik {

// The system's message for an errno value: "No such file or directory". Safe on any thread.
inline std::string errorText(int code) {
    return std::generic_category().message(code);
}

}  // namespace tarnik
