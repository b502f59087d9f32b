#include "app/views/Alert.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>

#include <gtest/gtest.h>

namespace tarnik {

TEST(Alert, showsBoundedPlainTextAndOneButton) {
    const auto alert = makeAlert("<b>title</b>", "<i>text</i>\n/" + std::string(1'000'000, 'w'));
    alert->show();
    QApplication::processEvents();
    std::string shown;
    for (const auto* label : alert->findChildren<QLabel*>()) {
        if (!label->isVisible() || label->text().isEmpty()) continue;
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        shown += label->text().toStdString();
    }
    EXPECT_TRUE(shown.starts_with("<b>title</b><i>text</i> /www")) << shown;
    EXPECT_LE(alert->width(), 800);
    EXPECT_TRUE(alert->isModal());
    ASSERT_EQ(alert->buttons().size(), 1);
    alert->buttons().front()->click();
    EXPECT_FALSE(alert->isVisible());
}

}  // namespace tarnik
