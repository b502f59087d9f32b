#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include <stdlib.h>
#include <unistd.h>

namespace tarnik {

// An empty folder for one test. The destructor removes it with its contents.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string name = std::filesystem::canonical(parent) / "tarnik-test.XXXXXX";
        if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    // An absolute path without symbolic links.
    const std::string& path() const { return path_; }

    // Writes a file and creates its folders. Returns its absolute path.
    std::string write(const std::string& name, std::string_view bytes) const {
        const std::filesystem::path file = path_ + "/" + name;
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    // Returns the bytes of a file, or an empty string if there is none.
    std::string read(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(path_ + "/" + name, std::ios::binary).rdbuf();
        return bytes.str();
    }

private:
    std::string path_;
};

// A temporary folder for the driver's socket, whose path has at most 103 bytes. TMPDIR of macOS is too long
// for it.
struct ShortTemporaryFolder : TemporaryFolder {
    ShortTemporaryFolder() : TemporaryFolder("/tmp") {}
};

}  // namespace tarnik
