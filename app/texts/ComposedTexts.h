#pragma once

#include <string>

namespace tarnik {

// Returns an English message that other parts of the program composed, in the person's language. The message
// is one of the known sentences with its placeholders filled, or such a sentence with a description in
// parentheses. A description of the system stays as it is, and so does an unknown message.
//
// Failures keep their English message, because the journal and the commands show it too.
std::string translatedMessage(const std::string& english);

}  // namespace tarnik
