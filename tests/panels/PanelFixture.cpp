#include "panels/PanelFixture.h"

#include "platform/SettingKeys.h"
#include "platform/qt/AppearancePalettes.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickStyle>
#include <QQuickWindow>
#include <QtPlugin>

Q_IMPORT_PLUGIN(Morvo_PanelsPlugin)

namespace morvo::test {
namespace {

constexpr QSizeF stageSize(150, 140);

DetectedAgent agent(const QString &id, const QString &name, std::int64_t window,
                    std::int64_t week) {
  return {.id = id, .name = name, .windowTokens = window, .weekTokens = week};
}

void collect(QQuickItem *item, QList<QQuickItem *> &items) {
  if (!item->isVisible() || item->opacity() <= 0) {
    return;
  }
  items.append(item);
  for (QQuickItem *child : item->childItems()) {
    collect(child, items);
  }
}

void judge(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text) {
  if (type != QtDebugMsg && type != QtInfoMsg) {
    ADD_FAILURE() << text.toStdString();
  }
}

} // namespace

PanelFixture::PanelFixture() {
  qInstallMessageHandler(judge);
  // Nothing may ask for it after the first window.
  static const bool isChosen = [] {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    return true;
  }();
  EXPECT_TRUE(isChosen);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  QFont font = QGuiApplication::font();
  font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Color Emoji")});
  QGuiApplication::setFont(font);
}

PanelFixture::~PanelFixture() {
  m_view.reset();
  qInstallMessageHandler(nullptr);
}

void PanelFixture::open() {
  AppearancePalettes::apply(
      AppearanceController::wanted(Setting(m_settings, Environment(m_environment))));
  start();
  if (m_before) {
    m_store->show(*m_before);
  }
  m_entries = std::make_unique<PanelEntries>(m_doors);
  makeStage(false);
  m_view = std::make_unique<QQuickView>();
  m_view->setResizeMode(QQuickView::SizeViewToRootObject);
  m_view->setInitialProperties({{QStringLiteral("store"), QVariant::fromValue(m_store.get())},
                                {QStringLiteral("entries"), QVariant::fromValue(m_entries.get())},
                                {QStringLiteral("stage"), QVariant::fromValue(m_stage.get())}});
  m_view->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Morvo/Panels/MainPanel.qml")));
  for (const QQmlError &error : m_view->errors()) {
    ADD_FAILURE() << error.toString().toStdString();
  }
  ASSERT_NE(m_view->rootObject(), nullptr);
  m_view->show();
  m_view->requestActivate();
  settle();
  QMetaObject::invokeMethod(root(), "appeared");
  settle();
}

void PanelFixture::makeStage(bool isStill) {
  const PetFiles files{.home = HomeFolder{m_folder.path()},
                       .resources = QStringLiteral(MORVO_PET_RESOURCES)};
  m_sprites = std::make_unique<MorvoSprites>(files);
  m_scene = std::make_unique<PetScene>(stageSize, files, *m_sprites,
                                       Setting(m_settings, Environment(m_environment)), m_clock,
                                       m_random);
  m_stage = std::make_unique<PanelStage>(PanelStage::Ground{
      .scene = *m_scene, .clock = m_clock, .scheduler = m_scheduler, .isStill = isStill});
}

void PanelFixture::settle() {
  for (int round = 0; round < 4; ++round) {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
  }
  // Layouts settle when the window is drawn.
  if (m_view) {
    static_cast<void>(grab());
  }
}

void PanelFixture::takeTab(int tab) {
  QMetaObject::invokeMethod(root(), "takeTab", Q_ARG(int, tab));
  settle();
}

QImage PanelFixture::grab() { return m_view->grabWindow(); }

void PanelFixture::keepPicture(const QString &name) {
  const QString folder = qEnvironmentVariable("MORVO_PANEL_PICTURES");
  if (!folder.isEmpty()) {
    EXPECT_TRUE(grab().save(QDir(folder).filePath(name + QStringLiteral(".png"))));
  }
}

QList<QQuickItem *> PanelFixture::seenItems() const {
  QList<QQuickItem *> items;
  collect(m_view->contentItem(), items);
  return items;
}

QQuickItem *PanelFixture::seen(const char *property, const QVariant &value) const {
  for (QQuickItem *item : seenItems()) {
    const QVariant own = item->property(property);
    if (own.isValid() && own == value) {
      return item;
    }
  }
  return nullptr;
}

void PanelFixture::click(QQuickItem *item) {
  ASSERT_NE(item, nullptr);
  const QPointF place = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
  mouse(QEvent::MouseButtonPress, place);
  mouse(QEvent::MouseButtonRelease, place);
  settle();
}

void PanelFixture::mouse(QEvent::Type type, QPointF place) {
  QMouseEvent event(type, place, m_view->mapToGlobal(place), Qt::LeftButton,
                    type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                    Qt::NoModifier);
  QCoreApplication::sendEvent(m_view.get(), &event);
}

void PanelFixture::press(int key) {
  for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier);
    QCoreApplication::sendEvent(m_view.get(), &event);
  }
  settle();
}

void PanelFixture::hold(int key) {
  QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, QString(), true);
  QCoreApplication::sendEvent(m_view.get(), &event);
  settle();
}

QQuickItem *PanelFixture::control(const QString &text) const {
  for (QQuickItem *item : seenItems()) {
    if (item->inherits("QQuickAbstractButton") && item->property("text").toString() == text) {
      return item;
    }
  }
  return nullptr;
}

void PanelFixture::storeCustom(const QString &id, const QString &name) {
  set(SettingKeys::personaCustoms,
      QStringLiteral(R"([{"id":"%1","name":"%2","tier":2,"character":"c"}])").arg(id, name));
}

PetStore::Picture PanelFixture::normal() {
  PetStore::Picture picture;
  picture.connected = true;
  picture.chatHealth = ChatHealth::ready;
  picture.mood = QStringLiteral("hype");
  picture.needs = Needs{.belly = 28, .energy = 82, .affinity = 70, .bond = 40};
  picture.quota = Quota{.conversationsRemaining = 68,
                        .conversationLimit = 100,
                        .petGensRemaining = 3,
                        .petGenLimit = 5};
  DetectedAgent claude =
      agent(QStringLiteral("claude"), QStringLiteral("Claude Code"), 1200000, 18400000);
  claude.liveLimit = LiveRateLimit{.primaryPct = 42, .weeklyPct = 71};
  DetectedAgent codex = agent(QStringLiteral("codex"), QStringLiteral("Codex"), 86000, 920000);
  picture.agents = std::vector<DetectedAgent>{
      claude, codex, agent(QStringLiteral("cursor"), QStringLiteral("Cursor"), 0, 0)};
  using Role = ChatMessage::Role;
  picture.messages = std::vector<ChatMessage>{
      {.role = Role::pet, .text = QStringLiteral("（喷出一串气泡）早，今天也一起写代码吧～")},
      {.role = Role::user, .text = QStringLiteral("帮我看下这个空指针")},
      {.role = Role::pet,
       .text = QStringLiteral("（探出头）嗯，第 42 行那个 user 可能是 nil，先加个 guard 兜一下。")},
      {.role = Role::user, .text = QStringLiteral("好")},
      {.role = Role::pet, .text = QString()}};
  return picture;
}

PetStore::Picture PanelFixture::overfull() {
  PetStore::Picture picture = normal();
  picture.chatHealth = ChatHealth::quotaExceeded;
  picture.needs = Needs{.belly = 3, .energy = 24.9, .affinity = 100, .bond = 100};
  picture.quota = Quota{.conversationsRemaining = 0,
                        .conversationLimit = 888888,
                        .petGensRemaining = 0,
                        .petGenLimit = 1000000};
  std::vector<DetectedAgent> agents;
  for (int i = 0; i < 6; ++i) {
    DetectedAgent full =
        agent(QStringLiteral("agent%1").arg(i),
              QStringLiteral("一个名字特别特别长的编码助手 No. %1").arg(i), 999400000, 99940000000);
    full.liveLimit = LiveRateLimit{.primaryPct = 60.0 + 8 * i, .weeklyPct = 100};
    agents.push_back(full);
  }
  picture.agents = agents;
  std::vector<ChatMessage> messages;
  for (int i = 0; i < 60; ++i) {
    messages.push_back(
        {.role = i % 2 == 0 ? ChatMessage::Role::pet : ChatMessage::Role::user,
         .text = QStringLiteral("第 %1 条：supercalifragilisticexpialidocious_variable_name_%1 ")
                     .arg(i)
                     .repeated(1 + i % 3)});
  }
  picture.messages = messages;
  return picture;
}

} // namespace morvo::test
