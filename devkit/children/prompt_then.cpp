// prompt_then exit CODE MILLISECONDS [pieces] [colours]
// prompt_then stay [pieces] [colours]
//
// Shows the pairing prompt and waits for a line. Then it exits with this code after this long, or
// prints "staying" and runs until it is signalled. "pieces" writes the prompt a few bytes at a time,
// "colours" puts colour changes inside its words. Exit 64 means wrong arguments, 65 that the input
// ended without a line.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <unistd.h>

using std::chrono::milliseconds;

namespace {

void show(const std::string& prompt, std::size_t pieceBytes) {
    for (std::size_t at = 0; at < prompt.size(); at += pieceBytes) {
        std::cout << prompt.substr(at, pieceBytes) << std::flush;
        if (pieceBytes < prompt.size()) std::this_thread::sleep_for(milliseconds(5));
    }
}

}  // namespace

int main(int count, char** arguments) {
    const std::vector<std::string_view> words(arguments + 1, arguments + count);
    const auto has = [&](std::string_view word) { return std::ranges::find(words, word) != words.end(); };
    const bool exits = has("exit") && words.size() >= 3;
    if (!exits && !has("stay")) return 64;
    alarm(120);  // a test that lost it must not leave it behind

    const std::string prompt = has("colours")
                                   ? "Press \033[1mEn\033[32mter\033[0m to con\033[4mnect it\033[0m: "
                                   : "Press Enter to connect it: ";
    show(prompt, has("pieces") ? 3 : prompt.size());

    std::string line;
    if (!std::getline(std::cin, line)) return 65;
    if (!exits) {
        std::cout << "staying" << std::endl;
        for (;;) pause();
    }
    std::this_thread::sleep_for(milliseconds(std::atoi(arguments[3])));
    return std::atoi(arguments[2]);
}
