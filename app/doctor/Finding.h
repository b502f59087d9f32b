#pragma once

#include <string>
#include <string_view>

namespace tarnik {

// The weight of a finding. Warnings and errors are problems.
enum class Severity {
    ok,
    note,     // worth knowing; nothing is wrong
    warning,  // works now, but may fail
    error,    // doesn't work
};

// Returns "ok", "note", "warning" or "error".
std::string_view nameOf(Severity severity);

// The result of one check of the doctor. It may contain paths and names of this machine.
struct Finding {
    std::string code;  // stable: "network.proxy"
    Severity severity = Severity::ok;
    std::string sentence;
    std::string remedy;  // a sentence; empty if nothing needs to be done

    bool isProblem() const { return severity >= Severity::warning; }
    bool operator==(const Finding&) const = default;
};

}  // namespace tarnik
