#include "core/foundation/RemoveTree.h"

#include <filesystem>
#include <system_error>
#include <vector>

namespace tarnik {

namespace fs = std::filesystem;

namespace {

// Lets the owner into every folder from `top` down.
void openFolders(const fs::path& top) {
    std::vector<fs::path> waiting{top};
    while (!waiting.empty()) {
        const fs::path folder = std::move(waiting.back());
        waiting.pop_back();
        std::error_code error;
        if (fs::symlink_status(folder, error).type() != fs::file_type::directory) continue;
        fs::permissions(folder, fs::perms::owner_all, error);
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code unknown;
            if (entry->is_directory(unknown) && !entry->is_symlink(unknown)) waiting.push_back(entry->path());
        }
    }
}

bool isGone(const fs::path& path) {
    std::error_code error;
    return fs::symlink_status(path, error).type() == fs::file_type::not_found;
}

}  // namespace

bool removeTree(const std::string& path) {
    std::error_code error;
    fs::remove_all(path, error);
    if (isGone(path)) return true;
    openFolders(path);
    fs::remove_all(path, error);
    return isGone(path);
}

}  // namespace tarnik
