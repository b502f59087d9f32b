#include "app/views/SymbolIcon.h"

#include <QIcon>
#include <QImage>

#include <gtest/gtest.h>

#include "app/model/WindowContent.h"

namespace tarnik {
namespace {

int inkedPixels(const QIcon& icon) {
    const QImage image = icon.pixmap(QSize(24, 24), 1.0).toImage();
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) inked += image.pixelColor(x, y).alpha() > 128 ? 1 : 0;
    return inked;
}

TEST(SymbolIcon, drawsEverySymbol) {
    using namespace SymbolName;
    for (const auto name : {checkmark, circle, arrows, download, warning})
        EXPECT_GT(inkedPixels(symbolIcon(name)), 40) << name;
    EXPECT_TRUE(symbolIcon("no.such.symbol").isNull());
    EXPECT_GT(inkedPixels(wordIcon("tk")), 40);
    EXPECT_GT(inkedPixels(applicationIcon()), 400);
}

}  // namespace
}  // namespace tarnik
