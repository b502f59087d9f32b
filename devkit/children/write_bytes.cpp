// write_bytes COUNT: writes COUNT bytes to standard output. Byte number i is 'a' + i % 26. Exits with 1 if a
// write fails.
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>

#include <unistd.h>

int main(int count, char** arguments) {
    constexpr std::size_t letters = 26;
    static std::array<char, 2521 * letters> pattern;  // room for a whole block after any first letter
    constexpr std::size_t blockBytes = pattern.size() - letters;
    for (std::size_t i = 0; i < pattern.size(); ++i) pattern[i] = static_cast<char>('a' + i % letters);

    const std::size_t total = count > 1 ? std::strtoull(arguments[1], nullptr, 10) : 0;
    for (std::size_t done = 0; done < total;) {
        const ssize_t written =
            write(STDOUT_FILENO, pattern.data() + done % letters, std::min(blockBytes, total - done));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return 1;
        done += static_cast<std::size_t>(written);
    }
    return 0;
}
