#include "app/RenderMode.h"

#include "app/PanelEntries.h"
#include "app/PanelStage.h"
#include "app/PanelWindow.h"
#include "app/PetStore.h"
#include "app/StillClock.h"
#include "base/Diagnostics.h"
#include "base/QtScheduler.h"
#include "companion/Personas.h"
#include "monitor/AgentConnectors.h"
#include "monitor/FleetScanner.h"
#include "pet/MorvoSprites.h"
#include "platform/qt/AppearancePalettes.h"
#include "usage/AgentScanner.h"
#include "usage/SourceUsageDispatch.h"

#include <QCoreApplication>
#include <QImage>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickRenderControl>
#include <QQuickRenderTarget>
#include <QQuickStyle>
#include <QQuickWindow>

#include <memory>

namespace morvo::RenderMode {
namespace {

constexpr QSizeF stageSize(150, 140);

/// A body for a store whose pet is only drawn in the panel.
class NoBody final : public PetBody {
public:
  bool react(const QString & /*kind*/) override { return false; }
  void setMood(const QString & /*mood*/) override {}
  void setPersona(const QString & /*personaId*/) override {}
  void emitHearts() override {}
  void setVisible(bool /*visible*/) override {}
  void setQuietMode(bool /*quiet*/) override {}
  void setBubble(const QString & /*text*/) override {}
  void setScale(double /*scale*/) override {}
  void setOpacity(double /*opacity*/) override {}
  [[nodiscard]] std::vector<PetMenuAction> catalogActions() const override { return {}; }
};

/// A picture needs no login.
class NoSecrets final : public SecretStore {
public:
  [[nodiscard]] std::optional<QString> read(const QString & /*service*/,
                                            const QString & /*account*/) const override {
    return std::nullopt;
  }
  void save(const QString & /*value*/, const QString & /*service*/,
            const QString & /*account*/) override {}
  void remove(const QString & /*service*/, const QString & /*account*/) override {}
  void onLoaded(std::function<void()> /*handler*/) override {}
};

/// A picture calls nobody.
class NoNotifications final : public NotificationService {
public:
  [[nodiscard]] bool isAvailable() const override { return false; }
  void show(const QString & /*title*/, const QString & /*body*/,
            std::function<void()> /*failed*/) override {}
  void onActivated(std::function<void()> /*handler*/) override {}
};

std::optional<MorvoPersona> wantedPersona(const Setting &setting) {
  const Environment &environment = setting.environment();
  const auto id = environment.nonEmpty(QStringLiteral("MORVO_PERSONA_ID"));
  auto persona = id ? Personas::find(setting.store(), *id) : std::nullopt;
  if (const auto avatar = environment.nonEmpty(QStringLiteral("MORVO_AVATAR_PATH")); avatar && id) {
    MorvoPersona worn = persona.value_or(Personas::morvo());
    worn.id = QStringLiteral("custom");
    worn.avatarPath = *avatar;
    return worn;
  }
  return persona;
}

PetStore::Picture scene(const EntryModes::Ground &ground, const Clock &clock) {
  SourceUsageDispatch logs(ground.hooks.home, clock);
  using Role = ChatMessage::Role;
  AccountReader accounts(ground.hooks.home, *ground.hooks.files);
  return {
      .connected = true,
      .chatHealth = ChatHealth::ready,
      .mood = QStringLiteral("hype"),
      .needs = Needs{.belly = 28, .energy = 82, .affinity = 70, .bond = 40},
      .quota = Quota{.conversationsRemaining = 1600, .interactionsRemaining = 5},
      .reply = QStringLiteral("（喷出一串气泡，尾巴缓缓摆动）代码跑通了……闻到效率的味道，有点饿。"),
      .persona = wantedPersona(ground.setting),
      .agents = AgentScanner::snapshot(ground.hooks.home, clock.now(), accounts,
                                       [&logs](const SourceAdapter &agent, double hours) {
                                         return logs.events(agent, hours, {});
                                       })
                    .agents,
      .usage = UsageStats{.windowTokens = 1280000, .weekTokens = 9640000, .usedPct = 42},
      .fleet = FleetScanner::scan(ground.hooks.home, clock.now()),
      .messages = std::vector<ChatMessage>{
          {.role = Role::pet, .text = QStringLiteral("（喷出一串气泡）早，今天也一起写代码吧～")},
          {.role = Role::user, .text = QStringLiteral("帮我看下这个空指针")},
          {.role = Role::pet,
           .text = QStringLiteral(
               "（探出头）嗯，第 42 行那个 user 可能是 nil，先加个 guard 兜一下。")}}};
}

/// Null for a persona that wears none.
QImage portraitOf(const MorvoPersona &persona) {
  return persona.avatarPath ? QImage(*persona.avatarPath) : QImage();
}

} // namespace

void run(const EntryModes::Ground &ground, const QString &path) {
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  QQuickStyle::setStyle(QStringLiteral("Basic"));
  AppearancePalettes::apply(AppearanceController::wanted(ground.setting));
  const SystemClock clock;
  QtScheduler scheduler;
  SeededRandomSource random;
  NoBody body;
  NoSecrets secrets;
  NoNotifications notifications;
  Notifier notifier(ground.setting, notifications);
  PetStore store({.clock = clock,
                  .scheduler = scheduler,
                  .random = random,
                  .setting = ground.setting,
                  .files = ground.files,
                  .hooks = ground.hooks,
                  .secrets = secrets,
                  .notifier = notifier,
                  .body = body,
                  .connectors = AgentConnectors::all(ground.hooks),
                  .inbox = nullptr});
  // The loops' first rounds would wash the scene away.
  QCoreApplication::processEvents();
  store.show(scene(ground, clock));
  MorvoSprites sprites(ground.files);
  StillClock still;
  SeededRandomSource fixed(0);
  PetScene pet(stageSize, ground.files, sprites, ground.setting, still, fixed);
  pet.setPersona(store.persona().id);
  pet.setMood(store.mood());
  PanelStage stage({.scene = pet, .clock = still, .scheduler = scheduler, .isStill = true},
                   portraitOf(store.persona()));
  PanelEntries entries({});
  const QImage image = picture(store, entries, stage, scale);
  if (image.isNull()) {
    return;
  }
  // Whoever asked for the picture looks at the file; there is nobody else to tell.
  static_cast<void>(image.save(path, "PNG"));
  Diagnostics::line(u"RENDER", QStringLiteral("wrote ") + path);
}

QImage picture(PetStore &store, PanelEntries &entries, PanelStage &stage, double pixels) {
  QQuickRenderControl control;
  QQuickWindow window(&control);
  window.setColor(Qt::transparent);
  QQmlEngine engine;
  QQmlComponent component(&engine, QUrl(PanelWindow::mainPanel));
  const std::unique_ptr<QObject> object(component.createWithInitialProperties(
      {{QStringLiteral("store"), QVariant::fromValue(&store)},
       {QStringLiteral("entries"), QVariant::fromValue(&entries)},
       {QStringLiteral("stage"), QVariant::fromValue(&stage)}}));
  auto *const root = qobject_cast<QQuickItem *>(object.get());
  if (root == nullptr) {
    Diagnostics::line(u"RENDER", component.errorString());
    return {};
  }
  root->setParentItem(window.contentItem());
  const QSize size(qRound(root->width()), qRound(root->height()));
  window.setGeometry(QRect(QPoint(), size));
  window.contentItem()->setSize(size);
  QImage image(size * pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(pixels);
  image.fill(Qt::transparent);
  window.setRenderTarget(QQuickRenderTarget::fromPaintDevice(&image));
  // Layouts settle in the first round.
  for (int round = 0; round < 2; ++round) {
    QCoreApplication::processEvents();
    control.polishItems();
    control.sync();
    control.render();
  }
  root->setParentItem(nullptr);
  return image;
}

} // namespace morvo::RenderMode
