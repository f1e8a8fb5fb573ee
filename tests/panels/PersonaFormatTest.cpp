#include "panels/PersonaFormat.h"

#include "companion/Personas.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(PersonaFormatTest, EachTierHasItsWord) {
  EXPECT_EQ(PersonaFormat::tierWord(1), QStringLiteral("深海"));
  EXPECT_EQ(PersonaFormat::tierWord(3), QStringLiteral("二次元"));
  EXPECT_EQ(PersonaFormat::tierWord(2), QStringLiteral("自定义"));
  EXPECT_EQ(PersonaFormat::tierWord(0), QStringLiteral("自定义"));
}

TEST(PersonaFormatTest, TheCurrentPersonaIsMarked) {
  const QString current = QStringLiteral("morvo");
  EXPECT_EQ(PersonaFormat::menuText(Personas::morvo(), current), QStringLiteral("✓ 小沃 · 深海"));
  EXPECT_EQ(PersonaFormat::menuText(Personas::anime(), current), QStringLiteral("星野 · 二次元"));
}

TEST(PersonaFormatTest, MissingGroupsAreCountedInTheUsersLanguage) {
  EXPECT_EQ(PersonaFormat::missingBadge(3, true), QStringLiteral("缺3组"));
  EXPECT_EQ(PersonaFormat::missingBadge(3, false), QStringLiteral("3 missing"));
  EXPECT_EQ(PersonaFormat::missingBadge(0, true), QString());
  EXPECT_EQ(PersonaFormat::missingLine({QStringLiteral("idle"), QStringLiteral("greet")}),
            QStringLiteral("缺：idle、greet"));
  EXPECT_EQ(PersonaFormat::missingLine({}), QString());
}

TEST(PersonaFormatTest, TheFillingButtonSaysWhatItDoes) {
  EXPECT_EQ(PersonaFormat::fillLabel(false, true), QStringLiteral("补全动画"));
  EXPECT_EQ(PersonaFormat::fillLabel(true, true), QStringLiteral("补全中…"));
  EXPECT_EQ(PersonaFormat::fillLabel(false, false), QStringLiteral("Fill Missing Animations"));
  EXPECT_EQ(PersonaFormat::fillLabel(true, false), QStringLiteral("Filling…"));
}

} // namespace
} // namespace morvo
