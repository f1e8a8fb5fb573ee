#include "companion/Personas.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <QDir>
#include <QTemporaryDir>

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

/// Two pets of the user's, each with its folder, and one that belongs to none of them.
class OwnPersonasTest : public PersonasTest {
protected:
  void SetUp() override {
    m_settings.set(SettingKeys::personaCustoms,
                   QString(u'[' + customJson + u',' + other + QStringLiteral(R"(,
                       {"id":"../stranger","name":"x","tier":2,"character":"x"}])")));
    for (const QString &id : {bean, cloud, QStringLiteral("../stranger"), Personas::morvo().id}) {
      ASSERT_TRUE(QDir().mkpath(folder(id)));
    }
  }
  [[nodiscard]] QString folder(const QString &id) const {
    return m_folder.filePath(QStringLiteral(".morvo/pets/") + id);
  }
  [[nodiscard]] bool hasFolder(const QString &id) const { return QDir(folder(id)).exists(); }
  void remove(const QString &id) { Personas::deleteCustom(m_settings, m_files, id); }

  const QString bean = QStringLiteral("custom-1");
  const QString cloud = QStringLiteral("custom-2");
  const QString other = QStringLiteral(
      R"({"id":"custom-2","name":"云","tier":2,"character":"一朵云","avatarPath":"/c.png"})");
  QTemporaryDir m_folder;
  PetFiles m_files{.home = {m_folder.path()}, .resources = QString()};
};

TEST_F(OwnPersonasTest, ARenamedOneKeepsTheRestAndItsPlace) {
  MorvoPersona wanted = *Personas::find(m_settings, bean);
  wanted.name = QStringLiteral("麻薯");
  Personas::rename(m_settings, bean, wanted.name);
  const auto personas = Personas::customs(m_settings);
  ASSERT_EQ(personas.size(), 3U);
  EXPECT_EQ(personas[0], wanted);
  EXPECT_EQ(personas[1].name, QStringLiteral("云"));
}

TEST_F(OwnPersonasTest, APresetOrAStrangerIsNotRenamed) {
  const auto before = m_settings.object(SettingKeys::personaCustoms);
  Personas::rename(m_settings, Personas::morvo().id, QStringLiteral("x"));
  Personas::rename(m_settings, QStringLiteral("custom-9"), QStringLiteral("x"));
  EXPECT_EQ(m_settings.object(SettingKeys::personaCustoms), before);
  EXPECT_EQ(Personas::find(m_settings, Personas::morvo().id), Personas::morvo());
}

TEST_F(OwnPersonasTest, ADeletedOneIsGoneWithItsFolderAlone) {
  remove(bean);
  EXPECT_FALSE(Personas::find(m_settings, bean));
  EXPECT_FALSE(hasFolder(bean));
  EXPECT_TRUE(Personas::find(m_settings, cloud));
  EXPECT_TRUE(hasFolder(cloud));
}

TEST_F(OwnPersonasTest, ADeletedOneThatWasChosenLeavesTheChoiceToTheDefault) {
  Personas::select(m_settings, bean);
  remove(bean);
  EXPECT_EQ(m_settings.object(SettingKeys::personaSelectedId), QVariant(Personas::morvo().id));
}

TEST_F(OwnPersonasTest, ADeletedOneThatWasNotChosenLeavesTheChoice) {
  Personas::select(m_settings, cloud);
  remove(bean);
  EXPECT_EQ(Personas::selected(m_settings).id, cloud);
  Personas::select(m_settings, Personas::anime().id);
  remove(cloud);
  EXPECT_EQ(Personas::selected(m_settings), Personas::anime());
}

TEST_F(OwnPersonasTest, DeletingAPresetOrAStrangerChangesNothing) {
  const auto before = m_settings.object(SettingKeys::personaCustoms);
  for (const QString &id : {Personas::morvo().id, QStringLiteral("custom-9"), QString(),
                            QStringLiteral(".."), QStringLiteral("custom-1/..")}) {
    remove(id);
  }
  EXPECT_EQ(m_settings.object(SettingKeys::personaCustoms), before);
  EXPECT_TRUE(hasFolder(bean));
  EXPECT_TRUE(hasFolder(Personas::morvo().id));
}

TEST_F(OwnPersonasTest, AnIdThatLeavesThePetsFolderTakesNoFilesWithIt) {
  remove(QStringLiteral("../stranger"));
  EXPECT_EQ(Personas::customs(m_settings).size(), 2U);
  EXPECT_TRUE(hasFolder(QStringLiteral("../stranger")));
}

TEST_F(OwnPersonasTest, ADeletedOneDoesNotComeBackFromTheOldSinglePersona) {
  m_settings.set(SettingKeys::personaCustomLegacy, customJson);
  remove(bean);
  remove(cloud);
  remove(QStringLiteral("../stranger"));
  EXPECT_TRUE(Personas::customs(m_settings).empty());
}

} // namespace
} // namespace morvo
