#include "core/foundation/SharedLibrary.h"

#include <gtest/gtest.h>

#include "core/foundation/LibraryFiles.h"

namespace tarnik {
namespace {

TEST(SharedLibrary, namesTheFirstThingThatIsMissing) {
    struct Case {
        const char* why;
        std::string file;
        std::vector<const char*> functions;
        std::string missing;  // what the failure must mention; empty: there is none
    };
    const Case cases[] = {
        {"all there", LibraryFiles::crypto, {"ERR_set_mark"}, ""},
        {"no library", "libtarnik-none.so.1", {"ERR_set_mark"}, "libtarnik-none.so.1"},
        {"a function, then another", LibraryFiles::curl, {"curl_none", "curl_nil", "curl_free"}, "curl_none"},
    };
    for (const auto& [why, file, functions, missing] : cases) {
        SharedLibrary library(file);
        void (*found)() = nullptr;
        for (const char* name : functions) library.find(found, name);
        EXPECT_EQ(library.failure().has_value(), !missing.empty()) << why;
        EXPECT_TRUE(library.failure().value_or("").contains(missing)) << why;
        EXPECT_EQ(found != nullptr, file != "libtarnik-none.so.1") << why;
    }
}

}  // namespace
}  // namespace tarnik
