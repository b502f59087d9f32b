#pragma once

#include <string_view>

#include "app/journal/JournalEvent.h"
#include "core/process/Environment.h"

namespace tarnik {

// Prints one line for each event of the journal: for the system journal with a priority, elsewhere with a
// time. Main thread.
class ServiceOutput {
public:
    // Borrows `fd`, usually standard output.
    ServiceOutput(int fd, const Environment& environment);

    void event(const JournalEvent& event);
    void hint(std::string_view text);

private:
    void print(char priority, std::string_view text) const;

    const int fd_;
    const bool toSystemJournal_;
};

}  // namespace tarnik
