#include "app/AppDelegate.h"

#include "app/StoreFixture.h"
#include "base/Diagnostics.h"

#include <QPainter>
#include <QPixmap>

namespace morvo {
namespace {

using namespace std::chrono_literals;

class FakeTray final : public TrayIcon {
public:
  void show() override { shown = true; }
  void setIcon(const QIcon &value) override {
    icon = value;
    ++changes;
  }
  void setToolTip(const QString &text) override { toolTip = text; }
  void onActivated(std::function<void()> handler) override { click = std::move(handler); }
  [[nodiscard]] std::optional<QRect> geometry() const override { return place; }

  bool shown = false;
  QIcon icon;
  int changes = 0;
  QString toolTip;
  std::function<void()> click;
  std::optional<QRect> place = QRect(10, 2, 22, 22);
};

class FakePanel final : public PanelHost {
public:
  void show(const std::optional<QRect> &icon, const std::optional<QPoint> &click) override {
    visible = true;
    shownBy = icon;
    shownAtClick = click;
  }
  void close() override { visible = false; }
  [[nodiscard]] bool isShown() const override { return visible; }
  [[nodiscard]] bool hasJustClosedItself() const override { return justClosed; }
  void setTransient(bool value) override { transient = value; }

  bool visible = false;
  bool justClosed = false;
  bool transient = true;
  std::optional<QRect> shownBy;
  std::optional<QPoint> shownAtClick;
};

/// An icon whose pixels are all of one colour.
QIcon plainIcon(const QColor &color) {
  QPixmap pixmap(18, 18);
  pixmap.fill(color);
  return QIcon(pixmap);
}

QColor colorAt(const QIcon &icon, int x, int y) {
  return icon.pixmap(QSize(18, 18), 1.0).toImage().pixelColor(x, y);
}

class AppDelegateTest : public test::StoreFixture {
protected:
  void launch() {
    m_delegate = std::make_unique<AppDelegate>(AppDelegate::Parts{
        .setting = Setting(m_settings, Environment(m_environment)),
        .scheduler = m_scheduler,
        .statusItem = m_tray,
        .pet = m_body,
        .makeStore =
            [this] {
              start();
              return std::move(m_store);
            },
        .makePopover =
            [this](PetStore &) {
              auto panel = std::make_unique<FakePanel>();
              m_panel = panel.get();
              return panel;
            },
        .personaInPlay = [this] { return m_persona; },
        .idleFrames =
            [this](const QString &id) {
              ++m_looks;
              return m_inTheMaking.contains(id) ? std::nullopt : std::optional(m_frames.value(id));
            },
        .applyAppearance = [this] { ++m_appearances; },
        .checkForUpdate = [this] { ++m_updateChecks; },
        .handleOpenUrl = [this](const QString &url) { m_urls.append(url); }});
    m_delegate->applicationDidFinishLaunching();
  }

  FakeTray m_tray;
  FakePanel *m_panel = nullptr;
  QString m_persona = QStringLiteral("morvo");
  QHash<QString, std::vector<QIcon>> m_frames{
      {QStringLiteral("morvo"), {plainIcon(Qt::blue), plainIcon(Qt::green), plainIcon(Qt::cyan)}}};
  QStringList m_inTheMaking;
  int m_looks = 0;
  int m_appearances = 0;
  int m_updateChecks = 0;
  QStringList m_urls;
  std::unique_ptr<AppDelegate> m_delegate;
};

TEST_F(AppDelegateTest, TheStartAppliesTheAppearanceMakesTheStoreAndShowsTheIcon) {
  launch();
  EXPECT_EQ(m_appearances, 1);
  ASSERT_NE(m_delegate->store(), nullptr);
  EXPECT_TRUE(m_tray.shown);
  EXPECT_EQ(m_tray.toolTip, QStringLiteral("小沃"));
}

TEST_F(AppDelegateTest, TheUpdateCheckFollowsAfter1Point2Seconds) {
  launch();
  advance(1199ms);
  EXPECT_EQ(m_updateChecks, 0);
  advance(1ms);
  EXPECT_EQ(m_updateChecks, 1);
  advance(1h);
  EXPECT_EQ(m_updateChecks, 1);
}

TEST_F(AppDelegateTest, TheUpdateCheckIsSkippedForTheValueOneOnly) {
  m_environment.insert(QStringLiteral("MORVO_SKIP_UPDATE_CHECK"), QStringLiteral("1"));
  launch();
  advance(5s);
  EXPECT_EQ(m_updateChecks, 0);
}

TEST_F(AppDelegateTest, AnyOtherValueLeavesTheUpdateCheck) {
  m_environment.insert(QStringLiteral("MORVO_SKIP_UPDATE_CHECK"), QStringLiteral("true"));
  launch();
  advance(5s);
  EXPECT_EQ(m_updateChecks, 1);
}

TEST_F(AppDelegateTest, TheFirstFrameShownIsTheSecondAndEachTickShowsTheNext) {
  launch();
  EXPECT_EQ(m_delegate->frameIdx(), 1U);
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::green));
  advance(110ms);
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::cyan));
  advance(110ms);
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::blue));
}

TEST_F(AppDelegateTest, AFrameLikeTheLastOneIsNotSetAgain) {
  const QIcon same = plainIcon(Qt::blue);
  m_frames[QStringLiteral("morvo")] = {same, same};
  launch();
  advance(5s);
  EXPECT_EQ(m_tray.changes, 1);
}

TEST_F(AppDelegateTest, SwitchingPersonaChangesTheIconAtTheNextTickAndStartsOver) {
  m_frames[QStringLiteral("anime")] = {plainIcon(Qt::red), plainIcon(Qt::yellow)};
  launch();
  advance(110ms);
  m_persona = QStringLiteral("anime");
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::cyan));
  advance(110ms);
  EXPECT_EQ(m_delegate->frameIdx(), 1U);
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::yellow));
  EXPECT_EQ(m_delegate->iconPersonaId(), QStringLiteral("anime"));
}

TEST_F(AppDelegateTest, APersonaWithoutFramesShowsTheDefaultPets) {
  m_persona = QStringLiteral("custom-1");
  launch();
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::green));
}

TEST_F(AppDelegateTest, FramesThatAreBeingMadeReplaceTheOldOnesWhenTheyAreThere) {
  m_frames.insert(QStringLiteral("custom-1"), {plainIcon(Qt::red), plainIcon(Qt::yellow)});
  launch();
  m_persona = QStringLiteral("custom-1");
  m_inTheMaking = {QStringLiteral("custom-1")};
  m_delegate->tickFrame();
  EXPECT_EQ(m_delegate->frameIdx(), 2U);
  EXPECT_EQ(colorAt(m_tray.icon, 4, 9), QColor(Qt::cyan));
  m_delegate->tickFrame();
  EXPECT_EQ(colorAt(m_tray.icon, 4, 9), QColor(Qt::blue));
  m_inTheMaking.clear();
  m_delegate->tickFrame();
  EXPECT_EQ(m_delegate->frameIdx(), 1U);
  EXPECT_EQ(colorAt(m_tray.icon, 4, 9), QColor(Qt::yellow));
}

TEST_F(AppDelegateTest, AMarkStandsInWhileTheFirstFramesAreBeingMade) {
  m_inTheMaking = {QStringLiteral("morvo")};
  launch();
  EXPECT_FALSE(m_tray.icon.isNull());
  m_inTheMaking.clear();
  m_delegate->tickFrame();
  EXPECT_EQ(colorAt(m_tray.icon, 4, 9), QColor(Qt::green));
}

TEST_F(AppDelegateTest, WithoutAnyFramesAMarkStandsIn) {
  m_frames.clear();
  launch();
  EXPECT_FALSE(m_tray.icon.isNull());
  advance(1s);
  EXPECT_EQ(m_tray.changes, 1);
}

TEST_F(AppDelegateTest, MissingFramesAreLookedForSeldomerThanFramesAreShown) {
  m_frames.clear();
  launch();
  const int atStart = m_looks;
  advance(20s);
  EXPECT_LE(m_looks - atStart, 5);
  m_frames.insert(QStringLiteral("morvo"), {plainIcon(Qt::blue)});
  advance(6s);
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::blue));
}

TEST_F(AppDelegateTest, APendingApprovalShowsTheRedDotFromTheNextTickOn) {
  launch();
  EXPECT_EQ(colorAt(m_tray.icon, 15, 3), QColor(Qt::green));
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  EXPECT_EQ(colorAt(m_tray.icon, 15, 3), QColor(Qt::green));
  advance(110ms);
  EXPECT_EQ(colorAt(m_tray.icon, 15, 3), QColor(255, 59, 48));
  EXPECT_EQ(colorAt(m_tray.icon, 9, 9), QColor(Qt::cyan));
}

TEST_F(AppDelegateTest, AMarkWithAWarningStandsInWhileSomethingWaits) {
  m_frames.clear();
  launch();
  const QImage quiet = m_tray.icon.pixmap(QSize(36, 36)).toImage();
  sendPermission(QStringLiteral("a"), QStringLiteral("Bash"), {});
  advance(110ms);
  EXPECT_NE(m_tray.icon.pixmap(QSize(36, 36)).toImage(), quiet);
}

TEST_F(AppDelegateTest, AClickOnTheIconThatAlreadyClosedThePanelDoesNotOpenItAgain) {
  launch();
  m_panel->justClosed = true;
  m_tray.click();
  EXPECT_FALSE(m_panel->visible);
}

TEST_F(AppDelegateTest, ThePanelShowsWhatTheAgentsFilesHoldNow) {
  launch();
  connector(0).connected = true;
  EXPECT_FALSE(m_delegate->store()->claudeConnected());
  m_tray.click();
  EXPECT_TRUE(m_delegate->store()->claudeConnected());
}

TEST_F(AppDelegateTest, AChangedAppearanceReachesTheWholeApplication) {
  launch();
  m_delegate->store()->announceAppearanceChange();
  EXPECT_EQ(m_appearances, 2);
}

TEST_F(AppDelegateTest, AClickOnTheIconOpensAndClosesThePanelBesideIt) {
  launch();
  m_tray.click();
  EXPECT_TRUE(m_panel->visible);
  EXPECT_EQ(m_panel->shownBy, QRect(10, 2, 22, 22));
  m_tray.click();
  EXPECT_FALSE(m_panel->visible);
}

TEST_F(AppDelegateTest, ALaterStartBringsUpThePanelAndNeverClosesIt) {
  launch();
  m_delegate->open({});
  m_delegate->open({});
  EXPECT_TRUE(m_panel->visible);
}

TEST_F(AppDelegateTest, LinksHandedOverAreOpenedInOrder) {
  launch();
  m_delegate->open({QStringLiteral("morvopet://a"), QStringLiteral("morvopet://b")});
  EXPECT_EQ(m_urls, (QStringList{QStringLiteral("morvopet://a"), QStringLiteral("morvopet://b")}));
  EXPECT_FALSE(m_panel->visible);
}

TEST_F(AppDelegateTest, OnlyLinksOfTheOwnSchemeInAnyCaseAndTheWordQuitAreUnderstood) {
  for (const char16_t *word : {u"morvopet://a", u"MORVOPET://a", u"morvopet:a", u"quit"}) {
    EXPECT_TRUE(AppDelegate::understands(QString::fromUtf16(word)));
  }
  for (const char16_t *word : {u"https://a", u"morvopet", u"", u"Quit", u"-x"}) {
    EXPECT_FALSE(AppDelegate::understands(QString::fromUtf16(word)));
  }
}

TEST_F(AppDelegateTest, AnEmptyShowPanelVariableAndAnyShowPetButOneDoNothing) {
  m_environment.insert(QStringLiteral("MORVO_SHOW_PANEL"), QString());
  m_environment.insert(QStringLiteral("MORVO_SHOW_PET"), QStringLiteral("yes"));
  launch();
  advance(2s);
  EXPECT_FALSE(m_panel->visible);
  EXPECT_TRUE(m_delegate->store()->reply().isEmpty());
}

TEST_F(AppDelegateTest, ShowPanelOpensItAfterAMomentAndKeepsItOpen) {
  m_environment.insert(QStringLiteral("MORVO_SHOW_PANEL"), QStringLiteral("x"));
  m_environment.insert(QStringLiteral("MORVO_PERSONA_ID"), QStringLiteral("anime"));
  QStringList lines;
  const Diagnostics::Capture capture([&lines](const QString &line) { lines.append(line); });
  launch();
  EXPECT_EQ(m_delegate->store()->persona().id, QStringLiteral("anime"));
  advance(599ms);
  EXPECT_FALSE(m_panel->visible);
  advance(1ms);
  EXPECT_TRUE(m_panel->visible);
  EXPECT_FALSE(m_panel->transient);
  EXPECT_EQ(lines, QStringList{QStringLiteral("[SHOWPANEL] shown=true btnWin=(10, 2, 22, 22)")});
}

TEST_F(AppDelegateTest, ShowPetShowsItWithALine) {
  m_environment.insert(QStringLiteral("MORVO_SHOW_PET"), QStringLiteral("1"));
  m_environment.insert(QStringLiteral("MORVO_PERSONA_ID"), QStringLiteral("anime"));
  launch();
  EXPECT_EQ(m_delegate->store()->persona().id, QStringLiteral("anime"));
  EXPECT_TRUE(m_body.visibility.back());
  EXPECT_EQ(m_delegate->store()->reply(),
            QStringLiteral("代码跑通啦～闻到效率的味道，有点想喝奶茶。"));
}

TEST_F(AppDelegateTest, ShowPetHandsAnUnknownPersonaToThePetAsItIs) {
  m_environment.insert(QStringLiteral("MORVO_SHOW_PET"), QStringLiteral("1"));
  m_environment.insert(QStringLiteral("MORVO_PERSONA_ID"), QStringLiteral("custom-x"));
  launch();
  EXPECT_EQ(m_delegate->store()->persona().id, QStringLiteral("morvo"));
  EXPECT_EQ(m_body.personas.back(), QStringLiteral("custom-x"));
}

} // namespace
} // namespace morvo
