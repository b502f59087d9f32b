#include "app/views/TrayIcon.h"

#include <QIcon>
#include <QImage>

#include <gtest/gtest.h>

namespace tarnik {
namespace {

constexpr TrayStatus statuses[] = {TrayStatus::connected, TrayStatus::working, TrayStatus::needsYou};

QImage picture(const QIcon& icon, int side) {
    return icon.pixmap(QSize(side, side), 1.0).toImage();
}

// A panel scales a picture of another size, which blurs it.
TEST(TrayIcon, keepsThePixelsOfTheSmallerPictureInsideAMargin) {
    const int cases[][3] = {{18, 16, 1}, {24, 22, 1}, {36, 32, 2}, {48, 44, 2}};  // side, inner side, margin
    for (const auto status : statuses)
        for (const auto& [side, inner, margin] : cases)
            EXPECT_EQ(picture(trayIcon(status), side).copy(margin, margin, inner, inner),
                      picture(trayIcon(status), inner))
                << side;
}

TEST(TrayIcon, hasSharpEdges) {
    for (const int side : {16, 18, 22, 24, 32, 36, 44, 48}) {
        const QImage image = picture(trayIcon(TrayStatus::working), side);
        const int row = side * 9 / 16;  // crosses only the letter's stem
        int inked = 0;
        for (int x = 0; x < side; ++x) {
            const int alpha = image.pixelColor(x, row).alpha();
            EXPECT_TRUE(alpha == 0 || alpha == 255) << side << ": " << x;
            inked += alpha == 255 ? 1 : 0;
        }
        EXPECT_GE(inked, side / 8);
    }
}

TEST(TrayIcon, replacesOnlyThePictureOfAConnectedMachineByAnImage) {
    for (const auto status : statuses) {
        const bool isDrawn = picture(trayIcon(status, "/no/image"), 18) == picture(trayIcon(status), 18);
        EXPECT_EQ(isDrawn, status != TrayStatus::connected);
    }
}

}  // namespace
}  // namespace tarnik
