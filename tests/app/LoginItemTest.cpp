#include "app/LoginItem.h"

#include <gtest/gtest.h>

namespace tarnik {
namespace {

TEST(LoginItem, registersOnceWhatIsNotEnabled) {
    bool enabled = true;
    int registered = 0;
    const LoginItemService service{.isEnabled = [&] { return enabled; },
                                   .registerItem = [&] { return ++registered < 0; }};
    LoginItem::ensureRegistered(service);
    EXPECT_EQ(registered, 0);
    enabled = false;
    LoginItem::ensureRegistered(service);
    EXPECT_EQ(registered, 1);
    LoginItem::ensureRegistered({});  // a system without such a list
}

}  // namespace
}  // namespace tarnik
