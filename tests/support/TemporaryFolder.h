#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include <stdlib.h>
#include <unistd.h>

namespace tarnik {

// An empty folder of a test's own, removed with all it holds.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string name =
            std::filesystem::canonical(std::filesystem::temp_directory_path()) / "tarnik-test.XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    // Absolute and free of links.
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

}  // namespace tarnik
