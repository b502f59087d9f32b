#include "core/foundation/SharedLibrary.h"

#include <gtest/gtest.h>

#include "core/foundation/LibraryFiles.h"

namespace tarnik {
namespace {

TEST(SharedLibrary, namesTheFirstThingThatIsMissing) {
    const auto failure = [](const std::string& file, const std::vector<const char*>& functions) {
        SharedLibrary library(file);
        void (*found)() = nullptr;
        for (const char* name : functions) library.find(found, name);
        EXPECT_EQ(found == nullptr, file == "libtarnik-none.so.1");
        return library.failure().value_or("all there");
    };
    EXPECT_EQ(failure(LibraryFiles::crypto, {"ERR_set_mark"}), "all there");
    EXPECT_TRUE(failure("libtarnik-none.so.1", {"ERR_set_mark"}).contains("libtarnik-none.so.1"));
    EXPECT_TRUE(failure(LibraryFiles::curl, {"curl_none", "curl_nil", "curl_free"}).contains("curl_none"));
}

}  // namespace
}  // namespace tarnik
