#include "app/views/SymbolIcon.h"

#include <QIcon>
#include <QImage>

#include <gtest/gtest.h>

#include "app/model/SymbolName.h"
#include "app/views/VectorPath.h"

namespace tarnik {
namespace {

int inkedPixels(const QIcon& icon) {
    const QImage image = icon.pixmap(QSize(24, 24), 1.0).toImage();
    int inked = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) inked += image.pixelColor(x, y).alpha() > 128 ? 1 : 0;
    return inked;
}

TEST(SymbolIcon, drawsEverySymbolAndTheMark) {
    using namespace SymbolName;
    for (const auto name : {checkmark, circle, arrows, download, warning})
        EXPECT_GT(inkedPixels(symbolIcon(name)), 40) << name;
    EXPECT_TRUE(symbolIcon("no.such.symbol").isNull());
    EXPECT_GT(inkedPixels(markIcon()), 60);
    EXPECT_GT(inkedPixels(wordIcon("tk")), 40);
    EXPECT_GT(inkedPixels(applicationIcon()), 400);
}

TEST(VectorPath, takesOnlyWhatItCanDraw) {
    EXPECT_EQ(vectorPath("M 1 2 L 3 2 C 3 3 2 4 1 4 Z").boundingRect(), QRectF(1, 2, 2, 2));
    for (const auto* text :
         {"M 1", "M 1 x", "L", "m 1 2 l 3 4", "M 1 2 C 1 2 3 4", "M 1 2 A 1 2 3 4 5 6 7", "1 2"})
        EXPECT_TRUE(vectorPath(text).isEmpty()) << text;
}

}  // namespace
}  // namespace tarnik
