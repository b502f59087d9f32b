#include "app/texts/PseudoLanguage.h"

#include <gtest/gtest.h>

namespace tarnik {

TEST(PseudoLanguage, lengthensTextsAndKeepsPlaceholders) {
    EXPECT_EQ(pseudoText("Sample {version}…", PseudoLanguage::accented), "[Šáɱɱþļéé {version}…]");
    EXPECT_EQ(pseudoText("Sample {a}", PseudoLanguage::rightToLeft), "[שאממפלהה {a}]");
}

}  // namespace tarnik
