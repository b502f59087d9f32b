#pragma once

#include <variant>

namespace tarnik {

// Returns true if a state that is a variant has this alternative.
template <typename State, typename... States>
bool is(const std::variant<States...>& state) {
    return std::holds_alternative<State>(state);
}

}  // namespace tarnik
