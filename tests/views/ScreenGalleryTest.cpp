#include "app/views/ScreenGallery.h"

#include <QDir>
#include <QImage>

#include <gtest/gtest.h>

#include "tests/support/TemporaryFolder.h"

namespace tarnik {

const ScreenGallery gallery{
    .webOrigin = *Url::parse("https://tarnik.invalid"),
    .screens = {{"connected", {}}, {"alert", {}, Relocation::Message{"title", "body"}}}};

TEST(ScreenGallery, writesEachScreenInAllPalettesAndSizes) {
    const TemporaryFolder folder;
    const auto made = folder.path() + "/made";
    ASSERT_EQ(gallery.writeScreens(made), 0);
    const QDir written(QString::fromStdString(made));
    EXPECT_EQ(written.entryList(QDir::Files).size(), gallery.screens.size() * 8);
    const QImage light(written.filePath("connected-light.png"));
    const QImage dark(written.filePath("connected-dark@2x.png"));
    EXPECT_EQ(light.size(), QSize(460, 560));
    EXPECT_EQ(dark.size(), QSize(920, 1120));
    EXPECT_GT(light.pixelColor(5, 5).lightness(), 200);
    EXPECT_LT(dark.pixelColor(5, 5).lightness(), 60);
}

}  // namespace tarnik
