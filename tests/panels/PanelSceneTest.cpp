#include "panels/PanelFixture.h"
#include "panels/SceneGrid.h"

#include "app/RenderMode.h"
#include "platform/SettingKeys.h"
#include "platform/qt/AppearancePalettes.h"

#include <QDir>
#include <QPainter>

namespace morvo {
namespace {

using test::SceneGrid;

/// Cells in which pictures of one scene may differ. What is missing or has moved by more than a
/// cell is many more.
constexpr int toleratedStrangers = 12;

/// The largest text size that the settings offer.
constexpr double largestText = 1.4;

struct Scene {
  const char *content;
  const char *tab;
  const char *appearance;
};

std::string nameOf(const Scene &scene) {
  return std::string(scene.content) + "_" + scene.tab + "_" + scene.appearance;
}

void PrintTo(const Scene &scene, std::ostream *out) { *out << nameOf(scene); }

/// The whole panel, drawn as `MORVO_RENDER` draws it, without a window.
class PanelSceneTest : public test::PanelFixture {
protected:
  void begin(const Scene &scene) {
    set(SettingKeys::appearance, QString::fromLatin1(scene.appearance));
    if (std::string_view(scene.content) == "large") {
      set(SettingKeys::fontScale, largestText);
    }
    m_environment.insert(QStringLiteral("MORVO_SHOW_PANEL"), QString::fromLatin1(scene.tab));
    AppearancePalettes::apply(
        AppearanceController::wanted(Setting(m_settings, Environment(m_environment))));
    start();
    m_doors.send = [](const QString &) {};
    m_doors.settings = [] {};
    m_doors.newPet = [](const QString &) {};
    const std::string_view content = scene.content;
    if (content == "overfull") {
      m_store->show(overfull());
    } else if (content == "large") {
      PetStore::Picture picture = normal();
      picture.agents.reset();
      m_store->show(picture);
    } else if (content != "empty") {
      m_store->show(normal());
    }
    if (content == "approval") {
      sendPermission(QStringLiteral("aa11bb22cc33"), QStringLiteral("Bash"),
                     QStringLiteral("git push --force origin main && rm -rf build"));
    } else if (content == "overfull") {
      sendPermission(
          QStringLiteral("aa11bb22cc33"), QStringLiteral("NotebookEdit"),
          QStringLiteral("rm -rf build/very/long/path && cmake --preset dev ").repeated(8));
    }
    makeStage(true);
  }
  [[nodiscard]] QImage drawn(double pixels) {
    m_entries = std::make_unique<PanelEntries>(m_doors);
    const QImage picture = RenderMode::picture(*m_store, *m_entries, *m_stage, pixels);
    EXPECT_FALSE(picture.isNull());
    return picture;
  }
  [[nodiscard]] static QString reference(const Scene &scene) {
    return QStringLiteral(MORVO_PANEL_SCENES "/") + QString::fromStdString(nameOf(scene)) +
           QStringLiteral(".png");
  }
};

class PanelSceneDrawing : public PanelSceneTest, public testing::WithParamInterface<Scene> {};

/// With `MORVO_PANEL_SCENES=new` what is drawn becomes the reference: look at it before. With
/// `MORVO_PANEL_PICTURES` the pictures are kept for the eye.
TEST_P(PanelSceneDrawing, LooksAsItDidAtOneAndTwoPixelsAPoint) {
  begin(GetParam());
  const QString pictures = qEnvironmentVariable("MORVO_PANEL_PICTURES");
  for (const int pixels : {1, 2}) {
    const QImage picture = drawn(pixels);
    if (!pictures.isEmpty()) {
      EXPECT_TRUE(
          picture.save(QDir(pictures).filePath(QStringLiteral("scene_%1_%2x.png")
                                                   .arg(QString::fromStdString(nameOf(GetParam())))
                                                   .arg(pixels))));
    }
    const SceneGrid grid = SceneGrid::of(picture);
    if (pixels == 1 && qEnvironmentVariable("MORVO_PANEL_SCENES") == u"new") {
      ASSERT_TRUE(grid.image().save(reference(GetParam())));
    }
    const QImage stored(reference(GetParam()));
    ASSERT_FALSE(stored.isNull()) << reference(GetParam()).toStdString();
    EXPECT_LE(grid.strangers(SceneGrid::stored(stored)), toleratedStrangers)
        << pixels << " pixels a point";
  }
}

std::vector<Scene> scenes() {
  std::vector<Scene> all;
  for (const char *content : {"empty", "normal", "overfull", "approval"}) {
    for (const char *tab : {"chat", "drawer", "pet"}) {
      for (const char *appearance : {"light", "dark"}) {
        all.push_back({content, tab, appearance});
      }
    }
  }
  for (const char *tab : {"chat", "drawer", "pet"}) {
    all.push_back({"large", tab, "light"});
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Panel, PanelSceneDrawing, testing::ValuesIn(scenes()),
                         [](const auto &info) { return nameOf(info.param); });

/// Changes that people would see, each in one scene.
class PanelSceneDamage : public PanelSceneTest {
protected:
  /// Cells that look unlike the stored scene.
  [[nodiscard]] static int strangers(const QImage &picture, const Scene &scene) {
    return SceneGrid::of(picture).strangers(SceneGrid::stored(QImage(reference(scene))));
  }
  /// Moves a part of the picture, and leaves the colour beside it behind.
  static void move(QImage &picture, const QRect &part, QPoint by) {
    const QImage moved = picture.copy(part);
    const QColor ground = picture.pixelColor(part.topLeft() - QPoint(2, 0));
    QPainter painter(&picture);
    painter.fillRect(part, ground);
    painter.drawImage(part.topLeft() + by, moved);
  }

  Scene m_chat{"normal", "chat", "light"};
  Scene m_monitor{"normal", "drawer", "dark"};
  Scene m_pet{"normal", "pet", "light"};
  Scene m_card{"approval", "chat", "dark"};
};

TEST_F(PanelSceneDamage, AGearThatIsMissingIsSeen) {
  begin(m_chat);
  m_doors.settings = nullptr;
  EXPECT_GT(strangers(drawn(1), m_chat), toleratedStrangers);
}

TEST_F(PanelSceneDamage, AnotherColourOfTheThemeIsSeen) {
  set(SettingKeys::themeColor, QStringLiteral("blue"));
  begin(m_chat);
  EXPECT_GT(strangers(drawn(1), m_chat), toleratedStrangers);
}

TEST_F(PanelSceneDamage, AnotherSizeOfTextIsSeen) {
  set(SettingKeys::fontScale, 1.1);
  begin(m_pet);
  EXPECT_GT(strangers(drawn(2), m_pet), toleratedStrangers);
}

TEST_F(PanelSceneDamage, ASwitchThatStandsOtherwiseIsSeen) {
  set(SettingKeys::preciseEvents, false);
  begin(m_monitor);
  EXPECT_GT(strangers(drawn(1), m_monitor), toleratedStrangers);
}

TEST_F(PanelSceneDamage, AMessageThatIsMissingIsSeen) {
  begin(m_chat);
  PetStore::Picture picture = normal();
  picture.messages->erase(picture.messages->begin() + 3);
  m_store->show(picture);
  EXPECT_GT(strangers(drawn(1), m_chat), toleratedStrangers);
}

TEST_F(PanelSceneDamage, ACardThatIsMissingIsSeen) {
  begin(m_chat);
  EXPECT_GT(strangers(drawn(1), m_card), toleratedStrangers);
}

TEST_F(PanelSceneDamage, AWordThatIsMissingIsSeen) {
  begin(m_chat);
  QImage picture = drawn(1);
  // The name of the tab in the middle.
  const QRect name(166, 86, 30, 20);
  QPainter(&picture).fillRect(name, picture.pixelColor(name.topLeft() - QPoint(30, 0)));
  EXPECT_GT(strangers(picture, m_chat), toleratedStrangers);
}

TEST_F(PanelSceneDamage, AButtonThatStandsALittleLowerIsSeen) {
  begin(m_card);
  QImage picture = drawn(1);
  EXPECT_LE(strangers(picture, m_card), toleratedStrangers);
  move(picture, QRect(26, 182, 288, 34), QPoint(0, 6));
  EXPECT_GT(strangers(picture, m_card), toleratedStrangers);
}

TEST_F(PanelSceneDamage, ABarThatIsLongerIsSeen) {
  begin(m_chat);
  PetStore::Picture picture = normal();
  picture.quota->conversationsRemaining = 40;
  m_store->show(picture);
  EXPECT_GT(strangers(drawn(1), m_chat), toleratedStrangers);
}

} // namespace
} // namespace morvo
