#pragma once

namespace tarnik {

// Runs --console, or a command whose function isn't in the command table: such a command needs more of the
// program than the front should load. Returns the exit status.
int runConsolePart(char** argv);

}  // namespace tarnik
