#include <gtest/gtest.h>

#include "app/Application.h"

namespace tarnik {
namespace {

TEST(LoginItem, registersOnceWhatIsNotEnabled) {
    bool enabled = true;
    int registered = 0;
    const LoginItemService service{.isEnabled = [&] { return enabled; },
                                   .registerItem = [&] { return ++registered < 0; }};
    ensureLoginItem(service);
    EXPECT_EQ(registered, 0);
    enabled = false;
    ensureLoginItem(service);
    EXPECT_EQ(registered, 1);
    ensureLoginItem({});  // a system without such a list
}

}  // namespace
}  // namespace tarnik
