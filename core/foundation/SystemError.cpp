#include "core/foundation/SystemError.h"

#include <cerrno>
#include <system_error>

namespace tarnik {

SystemError SystemError::last(const char* call, const std::string& subject) {
    const int code = errno;  // read first, because the allocation below may change it
    return {.call = call + (" " + subject), .code = code};
}

std::string describe(const SystemError& error) {
    return error.call + " failed: " + systemMessage(error.code);
}

std::string systemMessage(int code) {
    return std::generic_category().message(code);
}

}  // namespace tarnik
