#include "app/StoreFixture.h"
#include "companion/Personas.h"
#include "panels/ActSection.h"
#include "panels/AttentionSection.h"
#include "panels/HeaderSection.h"
#include "panels/LoadsSection.h"
#include "panels/MonitorSection.h"
#include "panels/PersonasSection.h"
#include "panels/QuotaSection.h"
#include "platform/SettingKeys.h"

#include <QDir>
#include <QFile>

namespace morvo {
namespace {

class PanelSectionsTest : public test::StoreFixture {
protected:
  template <typename Section> void attach(Section &section) {
    m_look.setStore(m_store.get());
    section.setLook(&m_look);
    section.setStore(m_store.get());
  }
  void storeCustom(const QString &id, const QString &name) {
    set(SettingKeys::personaCustoms,
        QStringLiteral(R"([{"id":"%1","name":"%2","tier":2,"character":"c"}])").arg(id, name));
  }

  PanelLook m_look;
};

TEST_F(PanelSectionsTest, TheHeadSaysOfflineAndWhatIsWrong) {
  start();
  HeaderSection header;
  attach(header);
  EXPECT_EQ(header.name(), QStringLiteral("小沃"));
  EXPECT_TRUE(header.state().startsWith(QStringLiteral("离线 · ")));
  EXPECT_EQ(header.trouble(), QStringLiteral("云端服务未连接"));
  PetStore::Picture picture;
  picture.connected = true;
  picture.chatHealth = ChatHealth::ready;
  picture.mood = QStringLiteral("hype");
  m_store->show(picture);
  EXPECT_EQ(header.state(), QStringLiteral("兴高采烈"));
  EXPECT_EQ(header.trouble(), QString());
}

TEST_F(PanelSectionsTest, AttentionShowsItsCardOnlyForWhatCallsTheUser) {
  start();
  AttentionSection attention;
  attach(attention);
  EXPECT_FALSE(attention.isShown());
  sendPermission(QStringLiteral("aa11bb22cc33"), QStringLiteral("Bash"), QStringLiteral("ls"));
  EXPECT_TRUE(attention.isShown());
  EXPECT_EQ(attention.headline(), QStringLiteral("权限：Bash：ls"));
  EXPECT_EQ(attention.rows()->value(0, "title"), QStringLiteral("等你确认"));
  EXPECT_NEAR(attention.ground().alphaF(), 0.08, 0.001);
  EXPECT_NEAR(attention.edge().alphaF(), 0.22, 0.001);
}

TEST_F(PanelSectionsTest, LoadsListOnlyAgentsWithFigures) {
  start();
  LoadsSection loads;
  attach(loads);
  EXPECT_TRUE(loads.isEmpty());
  DetectedAgent used{.id = QStringLiteral("codex"), .name = QStringLiteral("Codex")};
  used.liveLimit = LiveRateLimit{.primaryPct = 85, .weeklyPct = 3};
  PetStore::Picture picture;
  picture.agents = std::vector<DetectedAgent>{used, {.id = QStringLiteral("cursor")}};
  m_store->show(picture);
  ASSERT_EQ(loads.rows()->rowCount(), 1);
  EXPECT_EQ(loads.rows()->value(0, "name"), QStringLiteral("Codex"));
  EXPECT_EQ(loads.rows()->value(0, "trust"), QStringLiteral("官方额度"));
  EXPECT_DOUBLE_EQ(loads.rows()->value(0, "windowShare").toDouble(), 0.85);
  EXPECT_EQ(loads.rows()->value(0, "windowPercent"), QStringLiteral("85%"));
}

TEST_F(PanelSectionsTest, ASwitchWritesItsSettingAndShowsIt) {
  start();
  MonitorSection monitor;
  attach(monitor);
  ASSERT_EQ(monitor.toggles()->rowCount(), 4);
  EXPECT_EQ(monitor.toggles()->value(1, "isOn"), true);
  monitor.setToggle(1, false);
  EXPECT_EQ(m_settings.object(SettingKeys::preciseEvents), QVariant(false));
  EXPECT_EQ(monitor.toggles()->value(1, "isOn"), false);
  monitor.setToggle(99, true);
  monitor.setToggle(-1, true);
}

TEST_F(PanelSectionsTest, LookingAgainAsksTheCloud) {
  start();
  MonitorSection monitor;
  attach(monitor);
  const int before = m_cloud.syncs;
  monitor.appeared();
  EXPECT_EQ(m_cloud.syncs, before + 1);
  monitor.reload();
  EXPECT_EQ(m_cloud.syncs, before + 2);
}

TEST_F(PanelSectionsTest, LookingAgainReadsLogsOnlyWhileTheUserLetsThemBeRead) {
  start();
  MonitorSection monitor;
  attach(monitor);
  const int looks = m_usage.looks;
  monitor.appeared();
  monitor.reload();
  EXPECT_EQ(m_usage.looks, looks + 2);
  EXPECT_EQ(m_usage.captures, 0);
  set(SettingKeys::captureUsage, true);
  monitor.reload();
  EXPECT_EQ(m_usage.captures, 1);
}

TEST_F(PanelSectionsTest, TheActSwitchWritesTheSettingThenTheAgentsFile) {
  start();
  ActSection act;
  attach(act);
  EXPECT_FALSE(act.isOn());
  act.setOn(true);
  EXPECT_TRUE(act.isOn());
  EXPECT_EQ(m_settings.object(SettingKeys::act), QVariant(true));
  QFile file(m_folder.filePath(QStringLiteral(".claude/settings.json")));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_TRUE(file.readAll().contains("PreToolUse"));
}

TEST_F(PanelSectionsTest, TheDesktopPetIsShownWithoutChangingTheSetting) {
  start();
  ActSection act;
  attach(act);
  m_body.visibility.clear();
  act.showDesktopPet();
  EXPECT_EQ(m_body.visibility, QList<bool>{true});
  EXPECT_FALSE(m_settings.object(SettingKeys::desktopPet).has_value());
}

TEST_F(PanelSectionsTest, PersonasListPresetsThenTheUsersOwn) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  start();
  PersonasSection personas;
  attach(personas);
  ASSERT_EQ(personas.choices()->rowCount(), 3);
  EXPECT_EQ(personas.choices()->value(0, "label"), QStringLiteral("✓ 小沃 · 深海"));
  EXPECT_EQ(personas.choices()->value(1, "label"), QStringLiteral("星野 · 二次元"));
  EXPECT_EQ(personas.choices()->value(2, "label"), QStringLiteral("团子 · 自定义"));
  EXPECT_TRUE(personas.hasCustoms());
  personas.choose(QStringLiteral("anime"));
  EXPECT_EQ(m_store->persona().id, QStringLiteral("anime"));
  EXPECT_EQ(personas.choices()->value(1, "label"), QStringLiteral("✓ 星野 · 二次元"));
}

TEST_F(PanelSectionsTest, RenamingToWhiteSpaceLeavesTheName) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  start();
  PersonasSection personas;
  attach(personas);
  personas.rename(QStringLiteral("custom-1"), QStringLiteral(" \t\n"));
  EXPECT_EQ(personas.customs()->value(0, "name"), QStringLiteral("团子"));
  personas.rename(QStringLiteral("custom-1"), QStringLiteral("  麻薯 "));
  EXPECT_EQ(personas.customs()->value(0, "name"), QStringLiteral("麻薯"));
}

TEST_F(PanelSectionsTest, RemovingTheCurrentPersonaBringsTheDefaultBack) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  set(SettingKeys::personaSelectedId, QStringLiteral("custom-1"));
  start();
  const QString folder = m_folder.filePath(QStringLiteral(".morvo/pets/custom-1"));
  ASSERT_TRUE(QDir().mkpath(folder));
  PersonasSection personas;
  attach(personas);
  personas.remove(QStringLiteral("custom-1"));
  EXPECT_EQ(m_store->persona().id, QStringLiteral("morvo"));
  EXPECT_FALSE(personas.hasCustoms());
  EXPECT_FALSE(QDir(folder).exists());
  EXPECT_EQ(m_settings.object(SettingKeys::personaSelectedId), QVariant(QStringLiteral("morvo")));
}

TEST_F(PanelSectionsTest, RemovingLeavesPresetsAndStrangersAlone) {
  start();
  const QString folder = m_folder.filePath(QStringLiteral(".morvo/pets/morvo"));
  ASSERT_TRUE(QDir().mkpath(folder));
  PersonasSection personas;
  attach(personas);
  personas.remove(QStringLiteral("morvo"));
  personas.remove(QStringLiteral("../.."));
  EXPECT_TRUE(QDir(folder).exists());
  EXPECT_EQ(m_store->persona().id, QStringLiteral("morvo"));
}

TEST_F(PanelSectionsTest, MissingActionsAreTheDoorsToTell) {
  storeCustom(QStringLiteral("custom-1"), QStringLiteral("团子"));
  start();
  QStringList filled;
  PanelEntries entries(
      {.missingFrameSets =
           [](const QString &) {
             return QStringList{QStringLiteral("greet"), QStringLiteral("alert")};
           },
       .fillMissingAnimations = [&filled](const QString &id) { filled.append(id); }});
  PersonasSection personas;
  personas.setEntries(&entries);
  attach(personas);
  EXPECT_EQ(personas.customs()->value(0, "missingLine"), QStringLiteral("缺：greet、alert"));
  personas.fillMissing(QStringLiteral("custom-1"));
  EXPECT_EQ(filled, QStringList(QStringLiteral("custom-1")));
}

} // namespace
} // namespace morvo
