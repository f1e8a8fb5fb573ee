#include "companion/Personas.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

const QString customJson = QStringLiteral(
    R"({"id":"custom-1","name":"豆豆","tier":2,"character":"一只豆子","avatarPath":"/a.png"})");

class PersonasTest : public testing::Test {
protected:
  test::MemorySettings m_settings;
};

TEST_F(PersonasTest, TheDefaultPersonaIsSelectedAtFirst) {
  EXPECT_EQ(Personas::selected(m_settings), Personas::morvo());
  EXPECT_EQ(Personas::morvo().name, QStringLiteral("小沃"));
  EXPECT_EQ(Personas::morvo().character.count(u'\n'), 3);
  EXPECT_EQ(Personas::anime().tier, 3);
}

TEST_F(PersonasTest, AnUnknownSelectedIdYieldsTheDefaultAndLeavesTheStoredIdAlone) {
  Personas::select(m_settings, QStringLiteral("gone"));
  EXPECT_EQ(Personas::selected(m_settings), Personas::morvo());
  EXPECT_EQ(m_settings.object(SettingKeys::personaSelectedId)->toString(), QStringLiteral("gone"));
}

TEST_F(PersonasTest, ACustomPersonaIsFoundAfterThePresets) {
  m_settings.set(SettingKeys::personaCustoms, QString(u'[' + customJson + u']'));
  Personas::select(m_settings, QStringLiteral("custom-1"));
  EXPECT_EQ(Personas::selected(m_settings).name, QStringLiteral("豆豆"));
  EXPECT_EQ(Personas::selected(m_settings).avatarPath, QStringLiteral("/a.png"));
}

TEST_F(PersonasTest, TheOldSinglePersonaMovesIntoTheListAndItsKeyStays) {
  m_settings.set(SettingKeys::personaCustomLegacy, customJson);
  ASSERT_EQ(Personas::customs(m_settings).size(), 1U);
  EXPECT_TRUE(m_settings.object(SettingKeys::personaCustoms).has_value());
  EXPECT_TRUE(m_settings.object(SettingKeys::personaCustomLegacy).has_value());
  m_settings.remove(SettingKeys::personaCustomLegacy);
  EXPECT_EQ(Personas::customs(m_settings).size(), 1U);
}

TEST_F(PersonasTest, WhatCannotBeDecodedCountsAsNone) {
  m_settings.set(SettingKeys::personaCustoms, QStringLiteral(R"([{"id":"x"}])"));
  EXPECT_TRUE(Personas::customs(m_settings).empty());
  m_settings.set(SettingKeys::personaCustoms, QStringLiteral("{"));
  m_settings.set(SettingKeys::personaCustomLegacy, QStringLiteral("nonsense"));
  EXPECT_TRUE(Personas::customs(m_settings).empty());
}

} // namespace
} // namespace morvo
