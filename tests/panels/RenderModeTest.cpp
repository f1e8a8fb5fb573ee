#include "app/RenderMode.h"

#include "base/Diagnostics.h"
#include "base/SystemFileLayer.h"
#include "companion/Personas.h"
#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

using Variables = QHash<QString, QString>;

const QString drawer = QStringLiteral("MORVO_DRAWER");
const QString showPanel = QStringLiteral("MORVO_SHOW_PANEL");
const QString personaId = QStringLiteral("MORVO_PERSONA_ID");
const QString avatarPath = QStringLiteral("MORVO_AVATAR_PATH");
constexpr QSize usualSize(680, 1160);
/// The middle of the pet in the panel's head, in pixels.
constexpr QPoint pet(88, 84);

class RenderModeTest : public testing::Test {
protected:
  QImage render(const Variables &variables = {}) {
    const QString path = m_folder.filePath(QStringLiteral("panel.png"));
    render(variables, path);
    EXPECT_EQ(m_lines, QStringList(QStringLiteral("[RENDER] wrote ") + path));
    QImage picture(path);
    EXPECT_TRUE(QFile::remove(path));
    return picture;
  }
  void render(const Variables &variables, const QString &path) {
    m_lines.clear();
    const Environment environment(variables);
    const PetFiles files{.home = HomeFolder{m_home.path()},
                         .resources = QStringLiteral(MORVO_PET_RESOURCES)};
    RenderMode::run({.hooks = {.home = files.home, .environment = environment, .files = &m_layer},
                     .files = files,
                     .setting = Setting(m_settings, environment)},
                    path);
  }

  QTemporaryDir m_folder;
  QTemporaryDir m_home;
  SystemFileLayer m_layer;
  test::MemorySettings m_settings;
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines.append(line); }};
};

TEST_F(RenderModeTest, WritesThePanelAtTwoPixelsAPoint) {
  const QImage picture = render();
  EXPECT_EQ(picture.size(), usualSize);
  EXPECT_EQ(render(), picture);
}

TEST_F(RenderModeTest, StoresNothingOfTheScene) {
  render({{personaId, Personas::anime().id}});
  EXPECT_FALSE(m_settings.object(SettingKeys::personaSelectedId));
}

TEST_F(RenderModeTest, TheVariablesChooseTheTab) {
  const QImage chat = render();
  const QImage monitor = render({{drawer, QStringLiteral("1")}});
  const QImage petTab = render({{showPanel, QStringLiteral("PET")}});
  EXPECT_NE(monitor, chat);
  EXPECT_NE(petTab, chat);
  EXPECT_NE(petTab, monitor);
  EXPECT_EQ(render({{showPanel, QStringLiteral("drawer")}}), monitor);
  EXPECT_EQ(render({{showPanel, QStringLiteral("1")}}), chat);
  EXPECT_EQ(render({{drawer, QStringLiteral("true")}}), chat);
  EXPECT_EQ(render({{drawer, QStringLiteral("1")}, {showPanel, QStringLiteral("pet")}}), monitor);
}

TEST_F(RenderModeTest, ThePersonaIsChosenByItsId) {
  const QImage chosen = render();
  EXPECT_NE(render({{personaId, Personas::anime().id}}), chosen);
  EXPECT_EQ(render({{personaId, Personas::morvo().id}}), chosen);
  EXPECT_EQ(render({{personaId, QStringLiteral("nobody")}}), chosen);
  m_settings.set(SettingKeys::personaCustoms,
                 QStringLiteral(R"([{"id":"custom-1","name":"团子","tier":2,"character":"c"}])"));
  EXPECT_NE(render({{personaId, QStringLiteral("custom-1")}}), chosen);
}

TEST_F(RenderModeTest, AnAvatarIsWornByAPersonaThatIsNamed) {
  const QString avatar = m_folder.filePath(QStringLiteral("avatar.png"));
  QImage red(64, 64, QImage::Format_RGB32);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(avatar));
  const QImage plain = render();
  EXPECT_NE(plain.pixelColor(pet), QColor(Qt::red));
  EXPECT_EQ(render({{avatarPath, avatar}}), plain);
  EXPECT_EQ(render({{avatarPath, avatar}, {personaId, QStringLiteral("any")}}).pixelColor(pet),
            QColor(Qt::red));
}

TEST_F(RenderModeTest, FollowsTheSettingsOfTheLook) {
  const QImage dark = render();
  m_settings.set(SettingKeys::appearance, QStringLiteral("light"));
  const QImage light = render();
  EXPECT_GT(qGray(light.pixel(340, 16)), qGray(dark.pixel(340, 16)));
  m_settings.set(SettingKeys::fontScale, 1.4);
  EXPECT_NE(render(), light);
}

TEST_F(RenderModeTest, APictureThatCannotBeWrittenIsToldOfAllTheSame) {
  const QString path = m_folder.filePath(QStringLiteral("none/panel.png"));
  render({}, path);
  EXPECT_EQ(m_lines, QStringList(QStringLiteral("[RENDER] wrote ") + path));
  EXPECT_FALSE(QFile::exists(path));
}

} // namespace
} // namespace morvo
