#include "app/EntryModes.h"

#include "app/SceneMode.h"
#include "base/Diagnostics.h"
#include "base/SystemFileLayer.h"
#include "support/MemorySettings.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <gmock/gmock.h>

namespace morvo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QString pet = QStringLiteral("custom-1");

class EntryModesTest : public testing::Test {
protected:
  void set(const char *variable, const QString &value) {
    m_environment = m_environment.with(QString::fromLatin1(variable), value);
  }
  /// Frames of one colour each, so that a picture tells which one it shows.
  void frames(const QString &state, const QList<QColor> &colors) const {
    const QString folder = m_files.userDirectory(pet) + u'/' + state;
    ASSERT_TRUE(QDir().mkpath(folder));
    int number = 0;
    for (const QColor &color : colors) {
      QImage image(32, 32, QImage::Format_ARGB32_Premultiplied);
      image.fill(color);
      ASSERT_TRUE(image.save(folder + u'/' + QString::number(++number) + QStringLiteral(".png")));
    }
  }
  [[nodiscard]] QString path(const QString &name) const { return m_folder.filePath(name); }
  [[nodiscard]] bool take() {
    const bool isMeant = EntryModes::isMeant(m_environment);
    const bool taken = EntryModes::take(
        {.hooks = {.home = m_files.home, .environment = m_environment, .files = &m_layer},
         .files = m_files,
         .setting = Setting(m_settings, m_environment)});
    EXPECT_EQ(isMeant, taken);
    return taken;
  }
  /// The middle of the pet on the picture that the mode leaves.
  [[nodiscard]] QColor scene(const QString &rest) {
    set("MORVO_PERSONA_ID", pet);
    set("MORVO_SCENE", rest.arg(path(QStringLiteral("out.png"))));
    EXPECT_TRUE(take());
    const QImage image(path(QStringLiteral("out.png")));
    EXPECT_EQ(image.size(), SceneMode::stageSize);
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    return image.pixelColor(image.rect().center());
  }

  QTemporaryDir m_folder;
  PetFiles m_files{.home = {m_folder.filePath(QStringLiteral("home"))},
                   .resources = m_folder.filePath(QStringLiteral("resources"))};
  SystemFileLayer m_layer;
  test::MemorySettings m_settings;
  Environment m_environment;
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines.append(line); }};
};

TEST_F(EntryModesTest, noVariableNoMode) {
  EXPECT_FALSE(take());
  EXPECT_THAT(m_lines, IsEmpty());
}

TEST_F(EntryModesTest, aSceneWithoutFieldsIsNoMode) {
  set("MORVO_SCENE", QStringLiteral("celebrate"));
  EXPECT_FALSE(take());
  EXPECT_THAT(m_lines, IsEmpty());
}

TEST_F(EntryModesTest, anEmptyValueIsNoMode) {
  set("MORVO_SCENE", {});
  set("MORVO_FRAMES", {});
  set("MORVO_CONNECT_TEST", QStringLiteral("0"));
  EXPECT_FALSE(take());
}

TEST_F(EntryModesTest, onlyAOneSwitchesAModeOn) {
  for (const auto *variable : {"MORVO_SCAN", "MORVO_CODEX_LIMIT", "MORVO_CONNECT_TEST"}) {
    for (const auto *value : {"0", "true", "", "01", " 1"}) {
      set(variable, QString::fromLatin1(value));
      EXPECT_FALSE(take()) << variable << "=" << value;
    }
  }
  set("MORVO_CODEX_LIMIT", QStringLiteral("1"));
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines, ElementsAre(QStringLiteral("[CODEX] 没读到 rate_limits")));
}

TEST_F(EntryModesTest, aPetWithoutFramesIsDrawnInTheColourOfTheTheme) {
  const QString rest = QStringLiteral("calm:%1");
  const QColor usual = scene(rest);
  set("MORVO_THEME", QStringLiteral("pink"));
  EXPECT_NE(scene(rest), usual);
}

TEST_F(EntryModesTest, theSceneIsWrittenAsAPicture) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  EXPECT_EQ(scene(QStringLiteral("calm:%1")), QColor(Qt::red));
  EXPECT_THAT(m_lines,
              ElementsAre(QStringLiteral("[SCENE] wrote ") + path(QStringLiteral("out.png"))));
}

TEST_F(EntryModesTest, theThirdFieldLetsTimePass) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  EXPECT_EQ(scene(QStringLiteral("calm:%1:0.07")), QColor(Qt::green));
  EXPECT_EQ(scene(QStringLiteral("calm:%1:0.13")), QColor(Qt::red));
}

TEST_F(EntryModesTest, aThirdFieldThatIsNoTimeChangesNothing) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  for (const auto *field : {"", "soon", "nan", "-0.07", "0,07"}) {
    EXPECT_EQ(scene(QStringLiteral("calm:%1:") + QString::fromLatin1(field)), QColor(Qt::red));
  }
}

TEST_F(EntryModesTest, anEndlessTimeEnds) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::red});
  for (const auto *field : {"inf", "1e300"}) {
    EXPECT_EQ(scene(QStringLiteral("calm:%1:") + QString::fromLatin1(field)), QColor(Qt::red));
  }
}

TEST_F(EntryModesTest, celebratingAndAlertingArePerformed) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::red});
  frames(QStringLiteral("celebrate"), {Qt::blue, Qt::blue});
  frames(QStringLiteral("alert"), {Qt::yellow, Qt::yellow});
  EXPECT_EQ(scene(QStringLiteral("celebrate:%1")), QColor(Qt::blue));
  EXPECT_EQ(scene(QStringLiteral("alert:%1:0.01")), QColor(Qt::yellow));
  EXPECT_EQ(scene(QStringLiteral("alert:%1:1")), QColor(Qt::red));
  EXPECT_EQ(scene(QStringLiteral("greet:%1")), QColor(Qt::red));
}

TEST_F(EntryModesTest, aPetWithoutFramesIsDrawnAndItsSkippedReactionTold) {
  EXPECT_EQ(scene(QStringLiteral("celebrate:%1")).alpha(), 255);
  EXPECT_THAT(
      m_lines,
      ElementsAre(
          QStringLiteral("[PET] react skip: persona=custom-1 state=celebrate→celebrate frames=0"),
          QStringLiteral("[SCENE] wrote ") + path(QStringLiteral("out.png"))));
}

TEST_F(EntryModesTest, thePictureIsTheSameEachTime) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  const QString out = path(QStringLiteral("out.png"));
  static_cast<void>(scene(QStringLiteral("hype:%1:700")));
  const QImage first(out);
  static_cast<void>(scene(QStringLiteral("hype:%1:700")));
  EXPECT_EQ(QImage(out), first);
}

TEST_F(EntryModesTest, aFileThatCannotBeWrittenIsToldAsWritten) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  const QString nowhere = path(QStringLiteral("missing/out.png"));
  set("MORVO_SCENE", QStringLiteral("calm:") + nowhere);
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines, ElementsAre(QStringLiteral("[SCENE] wrote ") + nowhere));
  EXPECT_FALSE(QFile::exists(nowhere));
}

TEST_F(EntryModesTest, framesAreReported) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  frames(QStringLiteral("code"), {Qt::red});
  QFile torn(m_files.userDirectory(pet) + QStringLiteral("/code/2.png"));
  ASSERT_TRUE(torn.open(QIODevice::WriteOnly));
  set("MORVO_FRAMES", pet);
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines, ElementsAre(u"[FRAMES] persona=custom-1 code: 1 frames (disk=2) "
                                   u"idle: 2 frames (disk=2)"));
}

TEST_F(EntryModesTest, framesOfAnUnknownPetAreReportedAsNone) {
  set("MORVO_FRAMES", QStringLiteral("../x"));
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines,
              ElementsAre(u"[FRAMES] persona=../x alert: 0 frames (disk=0) celebrate: 0 frames "
                          u"(disk=0) greet: 0 frames (disk=0) idle: 0 frames (disk=0) sleep: 0 "
                          u"frames (disk=0)"));
}

TEST_F(EntryModesTest, theTraysIconsAreDrawnInARowOnADarkStrip) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green, Qt::blue});
  const QString out = path(QStringLiteral("icons.png"));
  set("MORVO_MENUBAR", pet + u':' + out);
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines,
              ElementsAre(QStringLiteral("[MENUBAR] ") + out + QStringLiteral(" frames 3")));
  const QImage strip(out);
  ASSERT_EQ(strip.size(), QSize(60, 20));
  const QColor ground = strip.pixelColor(0, 0);
  EXPECT_LT(ground.lightness(), 100);
  EXPECT_EQ(ground.saturation(), 0);
  const QList<QColor> colors{Qt::red, Qt::green, Qt::blue};
  for (int icon = 0; icon < 3; ++icon) {
    // Each fills its 18 by 18 and no more.
    EXPECT_EQ(strip.pixelColor(20 * icon, 10), ground);
    EXPECT_EQ(strip.pixelColor(20 * icon + 1, 1), colors[icon]);
    EXPECT_EQ(strip.pixelColor(20 * icon + 18, 18), colors[icon]);
    EXPECT_EQ(strip.pixelColor(20 * icon + 19, 10), ground);
  }
}

TEST_F(EntryModesTest, aPetWithoutTrayIconsGivesAnEmptyStrip) {
  const QString out = path(QStringLiteral("icons.png"));
  for (const QString &id : {pet, QString(), QStringLiteral("../x")}) {
    m_lines.clear();
    set("MORVO_MENUBAR", id + u':' + out);
    EXPECT_TRUE(take());
    EXPECT_THAT(m_lines,
                ElementsAre(QStringLiteral("[MENUBAR] ") + out + QStringLiteral(" frames 0")));
    EXPECT_EQ(QImage(out).size(), QSize(20, 20));
  }
}

TEST_F(EntryModesTest, trayIconsThatCannotBeWrittenAreToldAllTheSame) {
  frames(QStringLiteral("idle"), {Qt::red});
  const QString nowhere = path(QStringLiteral("missing/100%1 %2.png"));
  set("MORVO_MENUBAR", pet + u':' + nowhere + QStringLiteral(":more"));
  EXPECT_TRUE(take());
  EXPECT_THAT(m_lines,
              ElementsAre(QStringLiteral("[MENUBAR] ") + nowhere + QStringLiteral(" frames 1")));
}

TEST_F(EntryModesTest, aPetAloneIsNoTrayMode) {
  set("MORVO_MENUBAR", pet);
  EXPECT_FALSE(take());
  EXPECT_THAT(m_lines, IsEmpty());
}

TEST_F(EntryModesTest, theFirstModeInOrderIsTakenAlone) {
  frames(QStringLiteral("idle"), {Qt::red, Qt::green});
  set("MORVO_FRAMES", pet);
  static_cast<void>(scene(QStringLiteral("calm:%1")));
  EXPECT_THAT(m_lines,
              ElementsAre(QStringLiteral("[SCENE] wrote ") + path(QStringLiteral("out.png"))));
}

TEST_F(EntryModesTest, ofAllModesTheFirstInOrderIsTaken) {
  set("MORVO_SCAN", QStringLiteral("1"));
  set("MORVO_DISABLE_CLI_PROBES", QStringLiteral("1"));
  set("MORVO_DISABLE_CAUT", QStringLiteral("1"));
  const auto tagOfTaken = [this] {
    m_lines.clear();
    EXPECT_TRUE(take());
    return m_lines.isEmpty() ? QString() : m_lines.first().section(u' ', 0, 0);
  };
  // Its lines bear no tag.
  EXPECT_EQ(tagOfTaken(), QString());
  set("MORVO_CONNECT_TEST", QStringLiteral("1"));
  EXPECT_EQ(tagOfTaken(), QStringLiteral("[CONNECT]"));
  set("MORVO_MENUBAR", pet + u':' + path(QStringLiteral("icons.png")));
  EXPECT_EQ(tagOfTaken(), QStringLiteral("[MENUBAR]"));
  set("MORVO_FRAMES", pet);
  EXPECT_EQ(tagOfTaken(), QStringLiteral("[FRAMES]"));
  set("MORVO_CODEX_LIMIT", QStringLiteral("1"));
  EXPECT_EQ(tagOfTaken(), QStringLiteral("[CODEX]"));
  set("MORVO_SCENE", QStringLiteral("calm:") + path(QStringLiteral("out.png")));
  EXPECT_EQ(tagOfTaken(), QStringLiteral("[SCENE]"));
}

} // namespace
} // namespace morvo
