#include "app/relocation/QuarantineWalk.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace tarnik {

namespace {

namespace fs = std::filesystem;

class Walk {
public:
    explicit Walk(const BundleFiles& files) : files_(files) {}

    QuarantineReport below(const fs::path& top) {
        std::vector<fs::path> waiting{top};
        while (!waiting.empty()) {
            const fs::path entry = std::exchange(waiting.back(), {});
            waiting.pop_back();
            clear(entry);
            std::error_code unknown;
            if (fs::symlink_status(entry, unknown).type() == fs::file_type::directory) list(entry, waiting);
        }
        return std::move(report_);
    }

private:
    void clear(const fs::path& entry) {
        const auto had = files_.clearQuarantine(entry);
        if (!had) return fail(had.error());
        if (*had) ++report_.cleared;
    }

    void list(const fs::path& folder, std::vector<fs::path>& waiting) {
        std::error_code error;
        fs::directory_iterator entry(folder, error);
        for (; !error && entry != fs::directory_iterator(); entry.increment(error))
            waiting.push_back(entry->path());
        if (error) fail({.call = "opendir " + folder.string(), .code = error.value()});
    }

    void fail(const SystemError& error) {
        ++report_.failed;
        if (!report_.firstError) report_.firstError = error;
    }

    const BundleFiles& files_;
    QuarantineReport report_;
};

}  // namespace

std::vector<std::string> QuarantineReport::fields() const {
    std::vector<std::string> fields{"entriesCleared=" + std::to_string(cleared)};
    if (failed > 0) fields.push_back("entriesFailed=" + std::to_string(failed));
    if (firstError) fields.push_back("firstError=" + describe(*firstError));
    return fields;
}

QuarantineReport clearQuarantineBelow(const std::string& top, const BundleFiles& files) {
    return Walk(files).below(top);
}

}  // namespace tarnik
