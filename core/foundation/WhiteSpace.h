#pragma once

#include <string_view>

namespace tarnik {

// `text` without the white space and line breaks at its ends, those of Unicode included: what comes along
// when a person pastes something.
std::string_view trimmingWhiteSpace(std::string_view text);

}  // namespace tarnik
