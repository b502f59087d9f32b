// list_descriptors: prints the numbers of its open descriptors in ascending order, one per line.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <dirent.h>
#include <fcntl.h>

int main() {
    DIR* table = opendir("/dev/fd");
    if (table == nullptr) {
        std::perror("/dev/fd");
        return 1;
    }
    std::vector<int> open;
    while (const dirent* entry = readdir(table)) {
        if (entry->d_name[0] == '.') continue;
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor != dirfd(table) && fcntl(descriptor, F_GETFD) != -1) open.push_back(descriptor);
    }
    closedir(table);

    std::sort(open.begin(), open.end());
    for (const int descriptor : open) std::printf("%d\n", descriptor);
    return 0;
}
