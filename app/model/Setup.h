#pragma once

#include <string>
#include <variant>

namespace tarnik {

namespace Setups {

struct Installing {
    std::string text;  // the installer's latest line; empty until it has said something
    bool operator==(const Installing&) const = default;
};
struct Failed {                 // for the rest of this run
    std::string text;           // the error's description, unbounded
    std::string sentence = {};  // shown before the text, unless that is a sentence itself
    bool operator==(const Failed&) const = default;
};
struct Ready {  // the helper is installed and its supervisor was started
    bool operator==(const Ready&) const = default;
};

}  // namespace Setups

// How far the helper's installation has come.
using Setup = std::variant<Setups::Installing, Setups::Failed, Setups::Ready>;

}  // namespace tarnik
