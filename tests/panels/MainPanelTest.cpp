#include "panels/PanelFixture.h"

#include "panels/Contrast.h"
#include "panels/SignalCount.h"
#include "pet/MorvoTheme.h"
#include "pet/PetPalette.h"
#include "platform/SettingKeys.h"
#include "platform/qt/AppearancePalettes.h"

#include <QAccessible>

#include <array>
#include <map>
#include <set>

namespace morvo {
namespace {

constexpr int chatTab = 0;
constexpr int monitorTab = 1;
constexpr int petTab = 2;

/// How the panel is drawn.
struct Drawing {
  const char *appearance;
  const char *theme;
  double fontScale;
  int tab;
  bool isOverfull;
};

std::string nameOf(const testing::TestParamInfo<Drawing> &info) {
  const Drawing &drawing = info.param;
  return std::string(drawing.appearance) + "_" + drawing.theme + "_" +
         (drawing.fontScale > 1 ? "large" : "usual") + "_" + std::to_string(drawing.tab) +
         (drawing.isOverfull ? "_overfull" : "_normal");
}

class PanelDrawing : public test::PanelFixture, public testing::WithParamInterface<Drawing> {
protected:
  void openAsTold() {
    const Drawing &drawing = GetParam();
    set(SettingKeys::appearance, QString::fromLatin1(drawing.appearance));
    set(SettingKeys::themeColor, QString::fromLatin1(drawing.theme));
    set(SettingKeys::fontScale, drawing.fontScale);
    m_doors.send = [this](const QString &text) { m_sent.append(text); };
    m_doors.settings = [] {};
    open();
    m_store->show(drawing.isOverfull ? overfull() : normal());
    if (drawing.isOverfull) {
      sendPermission(
          QStringLiteral("aa11bb22cc33"), QStringLiteral("Bash"),
          QStringLiteral("rm -rf build/very/long/path && cmake --preset dev ").repeated(8));
    }
    takeTab(drawing.tab);
    settle();
  }
};

/// The item's seen rectangle in the window, after every clipping ancestor.
QRectF seenRect(QQuickItem *item) {
  QRectF rect = item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
  for (QQuickItem *parent = item->parentItem(); parent != nullptr; parent = parent->parentItem()) {
    if (parent->clip()) {
      rect &= parent->mapRectToScene(QRectF(0, 0, parent->width(), parent->height()));
    }
  }
  return rect;
}

TEST_P(PanelDrawing, NoTextIsCutAndNothingReachesBesideThePanel) {
  openAsTold();
  const QRectF window(0, 0, m_view->width(), m_view->height());
  for (QQuickItem *item : seenItems()) {
    const QRectF rect = seenRect(item);
    if (rect.isEmpty() || !item->inherits("QQuickText")) {
      continue;
    }
    const std::string text = item->property("text").toString().toStdString();
    EXPECT_LE(item->property("contentWidth").toDouble(), item->width() + 1) << text;
    EXPECT_LE(item->property("contentHeight").toDouble(), item->height() + 1) << text;
    EXPECT_GE(rect.left(), window.left()) << text;
    EXPECT_LE(rect.right(), window.right()) << text;
    EXPECT_LE(rect.bottom(), window.bottom() + 1) << text;
    if (!GetParam().isOverfull) {
      EXPECT_FALSE(item->property("truncated").toBool()) << text;
    }
  }
  keepPicture(QString::fromStdString(nameOf({GetParam(), 0})));
}

TEST_P(PanelDrawing, EveryTextCanBeReadOnThePanelsGround) {
  openAsTold();
  const bool isDark = QLatin1String(GetParam().appearance) == u"dark";
  const QColor abyss = isDark ? QColor(0x10, 0x1b, 0x2d) : QColor(0xf6, 0xf9, 0xfc);
  const QImage picture = grab();
  for (QQuickItem *item : seenItems()) {
    if (!item->inherits("QQuickText") || item->property("text").toString().isEmpty() ||
        seenRect(item).isEmpty()) {
      continue;
    }
    double opacity = 1;
    for (QQuickItem *each = item; each != nullptr; each = each->parentItem()) {
      opacity *= each->opacity();
    }
    if (opacity < 1) {
      continue; // What cannot be used now is drawn faint.
    }
    // The ground as it was drawn, just beside the text.
    const QRectF rect = seenRect(item);
    const QPoint beside((rect.topLeft() + QPointF(-2, rect.height() / 2)).toPoint());
    const QColor ground = picture.rect().contains(beside) ? picture.pixelColor(beside) : abyss;
    const auto color = item->property("color").value<QColor>();
    EXPECT_GE(Contrast::ratio(QColor(color.rgb()), ground), Contrast::leastForText - 0.1)
        << item->property("text").toString().toStdString() << " "
        << color.name(QColor::HexArgb).toStdString() << " on " << ground.name().toStdString();
  }
}

TEST_P(PanelDrawing, EveryControlHasANameAndARole) {
  openAsTold();
  int controls = 0;
  for (QQuickItem *item : seenItems()) {
    if (!item->activeFocusOnTab() && !item->inherits("QQuickAbstractButton")) {
      continue;
    }
    QAccessibleInterface *const face = QAccessible::queryAccessibleInterface(item);
    ASSERT_NE(face, nullptr) << item->metaObject()->className();
    EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << item->metaObject()->className();
    EXPECT_NE(face->role(), QAccessible::NoRole) << item->metaObject()->className();
    ++controls;
  }
  EXPECT_GE(controls, 4);
}

std::vector<Drawing> drawings() {
  std::vector<Drawing> all;
  for (const char *appearance : {"dark", "light"}) {
    for (const int tab : {chatTab, monitorTab, petTab}) {
      for (const bool isOverfull : {false, true}) {
        for (const double scale : {1.0, 1.4}) {
          all.push_back({appearance, "teal", scale, tab, isOverfull});
        }
      }
    }
    for (const char *theme : {"blue", "purple", "pink", "amber"}) {
      all.push_back({appearance, theme, 1.0, chatTab, false});
      all.push_back({appearance, theme, 1.0, petTab, false});
    }
  }
  return all;
}

INSTANTIATE_TEST_SUITE_P(Panel, PanelDrawing, testing::ValuesIn(drawings()), nameOf);

class MainPanelTest : public test::PanelFixture {
protected:
  void openServed() {
    m_doors.send = [this](const QString &text) { m_sent.append(text); };
    m_doors.settings = [this] { ++m_settingsOpened; };
    open();
  }
  [[nodiscard]] QQuickItem *field() const {
    return seen("placeholderText", QStringLiteral("跟小沃说点什么…"));
  }

  int m_settingsOpened = 0;
};

TEST_F(MainPanelTest, AnEmptyStoreIsDrawn) {
  open();
  keepPicture(QStringLiteral("empty_chat"));
  EXPECT_NE(seen("text", QStringLiteral("跟它说点什么吧，它会一直陪着你写代码。")), nullptr);
  EXPECT_NE(seen("text", QStringLiteral("小沃")), nullptr);
  takeTab(monitorTab);
  keepPicture(QStringLiteral("empty_monitor"));
  EXPECT_NE(seen("text", QStringLiteral("还没读到用量。在设置里扫描 Claude / Codex / Cursor，"
                                        "或先用一会儿对应工具。")),
            nullptr);
  EXPECT_EQ(seen("text", QStringLiteral("现在")), nullptr);
  takeTab(petTab);
  keepPicture(QStringLiteral("empty_pet"));
}

TEST_F(MainPanelTest, IsAsLargeAsItsScreenAllows) {
  open();
  EXPECT_EQ(root()->size(), QSizeF(340, 580));
  root()->setProperty("screenHeight", 500);
  settle();
  EXPECT_EQ(root()->size(), QSizeF(340, 380));
}

TEST_F(MainPanelTest, DoorsThatNobodyServesAreHidden) {
  open();
  EXPECT_EQ(field(), nullptr);
  EXPECT_EQ(seen("symbol", QStringLiteral("gearshape")), nullptr);
  EXPECT_EQ(seen("symbol", QStringLiteral("arrow.up.circle.fill")), nullptr);
}

TEST_F(MainPanelTest, TheGearOpensTheSettings) {
  openServed();
  click(seen("symbol", QStringLiteral("gearshape")));
  EXPECT_EQ(m_settingsOpened, 1);
}

TEST_F(MainPanelTest, ReturnSendsTheDraftAndClearsIt) {
  openServed();
  m_store->show(normal());
  settle();
  ASSERT_NE(field(), nullptr);
  field()->setProperty("text", QStringLiteral("早"));
  field()->forceActiveFocus();
  press(Qt::Key_Return);
  EXPECT_EQ(m_sent, QStringList(QStringLiteral("早")));
  EXPECT_EQ(field()->property("text").toString(), QString());
  press(Qt::Key_Return);
  EXPECT_EQ(m_sent.size(), 1);
}

TEST_F(MainPanelTest, WhileThePetThinksTheDraftWaits) {
  openServed();
  PetStore::Picture picture = normal();
  picture.thinking = true;
  m_store->show(picture);
  settle();
  EXPECT_FALSE(seen("symbol", QStringLiteral("arrow.up.circle.fill"))->isEnabled());
  EXPECT_TRUE(field()->isEnabled());
  field()->setProperty("text", QStringLiteral("早"));
  field()->forceActiveFocus();
  press(Qt::Key_Return);
  EXPECT_TRUE(m_sent.isEmpty());
  EXPECT_EQ(field()->property("text").toString(), QStringLiteral("早"));
}

TEST_F(MainPanelTest, ASpentQuotaClosesTheFieldAndSaysSo) {
  openServed();
  PetStore::Picture picture = normal();
  picture.chatHealth = ChatHealth::quotaExceeded;
  m_store->show(picture);
  settle();
  EXPECT_FALSE(field()->isEnabled());
  EXPECT_FALSE(seen("symbol", QStringLiteral("arrow.up.circle.fill"))->isEnabled());
  EXPECT_NE(seen("text", QStringLiteral("今日对话额度已用完")), nullptr);
}

TEST_F(MainPanelTest, DraftAndTabSurviveClosing) {
  openServed();
  field()->setProperty("text", QStringLiteral("半句"));
  takeTab(petTab);
  m_view->hide();
  settle();
  m_view->show();
  QMetaObject::invokeMethod(root(), "appeared");
  settle();
  EXPECT_EQ(root()->property("tab").toInt(), petTab);
  takeTab(chatTab);
  EXPECT_EQ(field()->property("text").toString(), QStringLiteral("半句"));
}

TEST_F(MainPanelTest, EscapeAsksToClose) {
  open();
  const test::SignalCount closing(root(), SIGNAL(closeRequested()));
  press(Qt::Key_Escape);
  EXPECT_EQ(closing.value(), 1);
}

TEST_F(MainPanelTest, NothingRunsWhileItIsClosed) {
  open();
  m_view->hide();
  settle();
  const auto revision = m_scene->revision();
  advance(std::chrono::seconds(5));
  EXPECT_EQ(m_scene->revision(), revision);
  m_view->show();
  settle();
  advance(std::chrono::seconds(1));
  EXPECT_NE(m_scene->revision(), revision);
}

TEST_F(MainPanelTest, TheKeyboardReachesEveryControlOfATab) {
  openServed();
  m_store->show(normal());
  takeTab(monitorTab);
  std::set<QQuickItem *> reached;
  for (int step = 0; step < 40; ++step) {
    press(Qt::Key_Tab);
    reached.insert(m_view->activeFocusItem());
  }
  int buttons = 0;
  for (QQuickItem *item : seenItems()) {
    if (item->inherits("QQuickAbstractButton") && item->isEnabled()) {
      ++buttons;
      EXPECT_TRUE(reached.contains(item)) << item->property("text").toString().toStdString();
    }
  }
  // Gear, three tabs, the reload button, four switches.
  EXPECT_EQ(buttons, 9);
}

TEST_F(MainPanelTest, AppearanceAndThemeActAtOnce) {
  open();
  m_store->show(normal());
  settle();
  const QImage dark = grab();
  AppearancePalettes::apply(Appearance::light);
  settle();
  const QImage light = grab();
  EXPECT_LT(qGray(dark.pixel(170, 8)), 60);
  EXPECT_GT(qGray(light.pixel(170, 8)), 200);
  set(SettingKeys::themeColor, QStringLiteral("pink"));
  m_store->announceAppearanceChange();
  settle();
  EXPECT_NE(grab(), light);
}

class MainPanelTextSizeTest : public MainPanelTest, public testing::WithParamInterface<int> {};

TEST_P(MainPanelTextSizeTest, EveryTextFollowsTheSettingAtOnce) {
  openServed();
  m_store->show(normal());
  sendPermission(QStringLiteral("aa11bb22cc33"), QStringLiteral("Bash"), QStringLiteral("ls"));
  takeTab(GetParam());
  std::map<QQuickItem *, int> before;
  for (QQuickItem *item : seenItems()) {
    if (item->property("font").isValid()) {
      before[item] = item->property("font").value<QFont>().pixelSize();
    }
  }
  set(SettingKeys::fontScale, 1.4);
  m_store->announceAppearanceChange();
  settle();
  int compared = 0;
  for (QQuickItem *item : seenItems()) {
    const bool shows = item->inherits("QQuickText") || item->inherits("QQuickTextEdit") ||
                       item->inherits("QQuickTextInput");
    if (shows && before.contains(item)) {
      EXPECT_NEAR(item->property("font").value<QFont>().pixelSize(), before[item] * 1.4, 1)
          << item->property("text").toString().toStdString();
      ++compared;
    }
  }
  EXPECT_GT(compared, 10);
}

INSTANTIATE_TEST_SUITE_P(Tabs, MainPanelTextSizeTest, testing::Values(chatTab, monitorTab, petTab));

TEST_F(MainPanelTest, AThousandMessagesKeepFewBubblesAndShowTheNewest) {
  open();
  std::vector<ChatMessage> messages;
  for (int i = 0; i < 1000; ++i) {
    messages.push_back({.text = QStringLiteral("消息 %1").arg(i)});
  }
  PetStore::Picture picture;
  picture.messages = messages;
  m_store->show(picture);
  settle();
  EXPECT_NE(seen("text", QStringLiteral("消息 999")), nullptr);
  int bubbles = 0;
  for (QQuickItem *item : seenItems()) {
    bubbles += item->inherits("QQuickTextEdit") ? 1 : 0;
  }
  EXPECT_LT(bubbles, 60);
}

TEST_F(MainPanelTest, TheSendButtonDoesWhatReturnDoes) {
  openServed();
  m_store->show(normal());
  settle();
  field()->setProperty("text", QStringLiteral(" \n"));
  click(seen("symbol", QStringLiteral("arrow.up.circle.fill")));
  EXPECT_TRUE(m_sent.isEmpty());
  field()->setProperty("text", QStringLiteral("早"));
  click(seen("symbol", QStringLiteral("arrow.up.circle.fill")));
  EXPECT_EQ(m_sent, QStringList(QStringLiteral("早")));
  EXPECT_EQ(field()->property("text").toString(), QString());
}

TEST_F(MainPanelTest, TheFieldAsksInThePetsName) {
  openServed();
  EXPECT_EQ(field()->property("placeholderText"), QStringLiteral("跟小沃说点什么…"));
}

TEST_F(MainPanelTest, TheTabsAreEquallyWideAndTheChosenOneWearsTheTheme) {
  open();
  QColor theme = MorvoTheme::current(m_store->setting()).color.in(true);
  QColor foam = PetPalette::foam().in(true);
  theme.setAlphaF(0.22F);
  foam.setAlphaF(0.06F);
  const std::array labels{QStringLiteral("对话"), QStringLiteral("监控"), QStringLiteral("宠物")};
  for (int chosen = 0; chosen < 3; ++chosen) {
    takeTab(chosen);
    for (int tab = 0; tab < 3; ++tab) {
      QQuickItem *const button = control(labels.at(static_cast<std::size_t>(tab)));
      ASSERT_NE(button, nullptr);
      EXPECT_NEAR(button->width(), control(labels[0])->width(), 1);
      EXPECT_EQ(button->property("ground").value<QColor>(), tab == chosen ? theme : foam);
    }
  }
}

class PartsOrder : public MainPanelTest,
                   public testing::WithParamInterface<std::pair<int, QList<const char16_t *>>> {};

TEST_P(PartsOrder, IsTheToldOneFromTheTop) {
  // The tab looks for itself as it comes up.
  m_usage.agentsThere = *normal().agents;
  openServed();
  m_store->show(normal());
  sendAgent(QStringLiteral("needs_input"));
  const auto [tab, texts] = GetParam();
  takeTab(tab);
  double above = 0;
  for (const char16_t *text : texts) {
    QQuickItem *const part = seen("text", QString::fromUtf16(text));
    ASSERT_NE(part, nullptr) << QString::fromUtf16(text).toStdString();
    EXPECT_GT(part->mapToScene({}).y(), above) << QString::fromUtf16(text).toStdString();
    above = part->mapToScene({}).y();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Tabs, PartsOrder,
    testing::Values(
        std::pair{chatTab, QList<const char16_t *>{u"小沃", u"兴高采烈", u"监控", u"造宠",
                                                   u"帮我看下这个空指针", u"…"}},
        std::pair{monitorTab, QList<const char16_t *>{u"监控", u"现在", u"额度", u"Claude Code",
                                                      u"Codex", u"刷新", u"读本机用量",
                                                      u"处理完成 / 需拍板事件", u"系统通知"}},
        std::pair{petTab, QList<const char16_t *>{
                              u"监控", u"状态", u"饱腹", u"摸摸、喂食、聊聊天会改变状态。", u"形象",
                              u"显示桌面宠", u"摸摸 / 喂食 / 动作 → 右键桌面悬浮宠",
                              u"Act 权限守门（改动必问你）"}}));

TEST_F(MainPanelTest, BubblesStandOnTheirOwnersSideAndAreNeverTooWide) {
  open();
  const QString longText = QStringLiteral("很长的话").repeated(40);
  PetStore::Picture picture;
  picture.messages =
      std::vector<ChatMessage>{{.role = ChatMessage::Role::user, .text = QStringLiteral("早")},
                               {.role = ChatMessage::Role::user, .text = longText},
                               {.role = ChatMessage::Role::pet, .text = QStringLiteral("嗯")}};
  m_store->show(picture);
  settle();
  int bubbles = 0;
  for (QQuickItem *item : seenItems()) {
    if (item->inherits("QQuickTextEdit")) {
      const bool isPets = item->property("text").toString() == QStringLiteral("嗯");
      const QQuickItem *const bubble = item->parentItem();
      const QQuickItem *const row = bubble->parentItem();
      EXPECT_LE(bubble->width(), 240);
      EXPECT_DOUBLE_EQ(item->x(), 11);
      EXPECT_DOUBLE_EQ(item->y(), 8);
      if (isPets) {
        EXPECT_DOUBLE_EQ(bubble->x(), 0);
        EXPECT_GE(row->width() - bubble->width(), 36);
      } else {
        EXPECT_GE(bubble->x(), 36);
        EXPECT_GT(bubble->x() + bubble->width(), row->width() - 10);
      }
      EXPECT_TRUE(item->property("selectByMouse").toBool());
      ++bubbles;
    }
  }
  EXPECT_EQ(bubbles, 3);
}

class TimelineTest : public MainPanelTest {
protected:
  void SetUp() override {
    open();
    m_picture = overfull();
    m_store->show(m_picture);
    settle();
    ASSERT_NE(timeline(), nullptr);
  }
  [[nodiscard]] QQuickItem *timeline() const {
    for (QQuickItem *item : seenItems()) {
      if (item->inherits("QQuickListView")) {
        return item;
      }
    }
    return nullptr;
  }
  [[nodiscard]] double place() const { return timeline()->property("contentY").toDouble(); }
  [[nodiscard]] bool isAtEnd() const { return timeline()->property("atYEnd").toBool(); }
  void readOlder() {
    timeline()->setProperty("contentY", place() - 400);
    settle();
    ASSERT_FALSE(isAtEnd());
  }

  PetStore::Picture m_picture;
};

class FilledTimelineTest : public TimelineTest {
protected:
  void SetUp() override {
    m_before = overfull();
    open();
    ASSERT_NE(timeline(), nullptr);
  }
};

TEST_F(FilledTimelineTest, IsOpenedAtTheNewest) { EXPECT_TRUE(isAtEnd()); }

TEST_F(TimelineTest, BeginsAtTheNewest) { EXPECT_TRUE(isAtEnd()); }

TEST_F(TimelineTest, StaysWhereItIsReadWhateverElseChanges) {
  readOlder();
  const double before = place();
  PetStore::Picture other;
  other.mood = QStringLiteral("sleepy");
  other.thinking = true;
  other.chatHealth = ChatHealth::ready;
  other.needs = Needs{.belly = 1};
  m_store->show(other);
  m_store->announceAppearanceChange();
  settle();
  EXPECT_DOUBLE_EQ(place(), before);
}

TEST_F(TimelineTest, GoesToAMessageThatArrives) {
  readOlder();
  m_picture.messages->push_back({.text = QStringLiteral("新的")});
  m_store->show(m_picture);
  settle();
  EXPECT_TRUE(isAtEnd());
  EXPECT_NE(seen("text", QStringLiteral("新的")), nullptr);
}

TEST_F(TimelineTest, FollowsAReplyThatGrows) {
  readOlder();
  m_picture.messages->back().text += QStringLiteral(" 还有这些").repeated(40);
  m_store->show(m_picture);
  settle();
  EXPECT_TRUE(isAtEnd());
}

TEST_F(TimelineTest, ThatLosesRoomStillShowsTheNewest) {
  const double room = timeline()->height();
  root()->setProperty("screenHeight", 500);
  settle();
  ASSERT_LT(timeline()->height(), room);
  EXPECT_TRUE(isAtEnd());
}

TEST_F(TimelineTest, ThatLosesRoomStaysWhereItIsRead) {
  readOlder();
  const double before = place();
  root()->setProperty("screenHeight", 500);
  settle();
  EXPECT_DOUBLE_EQ(place(), before);
}

TEST_F(TimelineTest, WithLargerTextStillShowsTheNewest) {
  set(SettingKeys::fontScale, 1.4);
  m_store->announceAppearanceChange();
  settle();
  EXPECT_TRUE(isAtEnd());
}

TEST_F(MainPanelTest, ARequestShowsItsCardAndHostileTextStaysText) {
  open();
  EXPECT_EQ(seen("text", QStringLiteral("批准")), nullptr);
  sendPermission(QStringLiteral("aa11bb22cc33"), QStringLiteral("Bash"),
                 QStringLiteral("<b>rm</b> <img src='x'> \u202Egnp"));
  settle();
  EXPECT_NE(seen("text", QStringLiteral("要批准 Bash 吗？")), nullptr);
  EXPECT_NE(seen("text", QStringLiteral("<b>rm</b> <img src='x'> [U+202E]gnp")), nullptr);
  EXPECT_NE(seen("text", QStringLiteral("批准")), nullptr);
  keepPicture(QStringLiteral("approval"));
  for (QQuickItem *item : seenItems()) {
    if (item->inherits("QQuickText")) {
      EXPECT_EQ(item->property("textFormat").toInt(), 0); // Text.PlainText
    }
  }
}

} // namespace
} // namespace morvo
