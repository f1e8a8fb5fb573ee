#include "app/MorvoBarApp.h"

#include "app/AppDelegate.h"
#include "app/EntryModes.h"
#include "app/LocalUsage.h"
#include "app/PanelWindow.h"
#include "app/TrayFrames.h"
#include "base/Diagnostics.h"
#include "base/QtScheduler.h"
#include "base/SystemFileLayer.h"
#include "monitor/AgentConnectors.h"
#include "monitor/ConnectCommand.h"
#include "monitor/Inbox.h"
#include "monitor/LocalFleet.h"
#include "pet/DesktopPetController.h"
#include "platform/MorvoHome.h"
#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/HomeFolders.h"
#include "platform/linux/LibsecretVault.h"
#include "platform/linux/LinuxTrayPresence.h"
#include "platform/linux/LocalSingleInstance.h"
#include "platform/linux/SecretServiceStore.h"
#include "platform/linux/TerminationSignals.h"
#include "platform/linux/X11Platform.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/qt/AppearancePalettes.h"
#include "platform/qt/QtContextMenu.h"
#include "platform/qt/QtScreens.h"
#include "platform/qt/QtTrayIcon.h"
#include "platform/qt/SettingsFile.h"
#include "usage/UsageAnalytics.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QTextStream>

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvo::MorvoBarApp {
namespace {

const QString usage =
    QStringLiteral("用法：morvobar [命令]\n"
                   "\n"
                   "  （无命令）           启动；已在运行时打开面板\n"
                   "  connect <agent>      连接 claude、codex、gemini 或 cursor\n"
                   "  disconnect <agent>   断开\n"
                   "  status               各 agent 的连接状态，以及什么会挡住事件\n"
                   "  quit                 退出正在运行的 MorvoBar\n"
                   "\n"
                   "connect、disconnect、status 可加 --json。\n");

constexpr int success = 0;
constexpr int failure = 1;
constexpr int wrongUsage = 2;

/// What the process was started in.
struct Surroundings {
  Environment environment = Environment::ofProcess();
  HomeFolder home = HomeFolders::find(environment);
  SystemFileLayer files;

  [[nodiscard]] HookContext hooks() {
    return {.home = home, .environment = environment, .files = &files};
  }

  /// The settings stand in the user's configuration folder; a home named by `MORVO_HOME` brings
  /// its own.
  [[nodiscard]] QString settingsPath() const {
    const auto configuration = environment.nonEmpty(QStringLiteral("XDG_CONFIG_HOME"));
    const bool isPortable = environment.nonEmpty(QStringLiteral("MORVO_HOME")).has_value();
    const QString folder = configuration && !isPortable && QDir::isAbsolutePath(*configuration)
                               ? *configuration
                               : home.file(QStringLiteral(".config"));
    return folder + QStringLiteral("/morvobar/settings.ini");
  }

  /// Beside the program: `../share/morvobar` of the folder it was started from.
  [[nodiscard]] static QString resources() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() +
                           QStringLiteral("/../share/morvobar"));
  }
  [[nodiscard]] PetFiles petFiles() const { return {.home = home, .resources = resources()}; }
};

/// The running program: every part, in the order in which each stands on those above it.
class Program {
public:
  explicit Program(Surroundings &surroundings)
      : m_surroundings(&surroundings), m_settingsFile(surroundings.settingsPath()),
        m_setting(m_settingsFile, surroundings.environment), m_calibrator(m_settingsFile, m_clock),
        m_files(surroundings.petFiles()),
        m_secrets(std::make_shared<LibsecretVault>(), surroundings.files,
                  MorvoHome::directory(surroundings.home) + QStringLiteral("/secrets.json"),
                  m_scheduler, {}),
        m_notifications(QDBusConnection::sessionBus()), m_notifier(m_setting, m_notifications),
        m_trayPresence(QDBusConnection::sessionBus()), m_tray(m_trayPresence),
        m_trayFrames(m_files, m_workers), m_pet({.files = m_files,
                                                 .setting = m_setting,
                                                 .windows = m_windows,
                                                 .screens = m_screens,
                                                 .menu = m_menu,
                                                 .clock = m_clock,
                                                 .scheduler = m_scheduler,
                                                 .random = m_random}),
        m_delegate(delegateParts()) {
    m_notifications.onActivated([this] { m_delegate.showPopover(); });
    m_delegate.applicationDidFinishLaunching();
  }
  Program(const Program &) = delete;
  Program &operator=(const Program &) = delete;
  ~Program() { m_pet.setInteractions(nullptr); }

  void open(const QStringList &words) { m_delegate.open(words); }

private:
  [[nodiscard]] AppDelegate::Parts delegateParts() {
    return {.setting = m_setting,
            .scheduler = m_scheduler,
            .statusItem = m_tray,
            .pet = m_pet,
            .makeStore = [this] { return makeStore(); },
            .makePopover =
                [this](PetStore &store) {
                  return std::make_unique<PanelWindow>(PanelWindow::Ground{
                      .store = store,
                      .entries = m_panelEntries,
                      .stage = m_panelStage,
                      .petPlace = [this] { return petPlace(); },
                      .onScreen = [this](QWindow *panel) { m_pet.standBeneath(panel); },
                      .source = QUrl(PanelWindow::mainPanel)});
                },
            .personaInPlay = [this] { return m_pet.personaInPlay(); },
            .idleFrames = [this](const QString &id) { return m_trayFrames.idle(id); },
            .applyAppearance =
                [this] {
                  AppearancePalettes::apply(AppearanceController::wanted(m_setting));
                  m_pet.refreshLook();
                },
            .checkForUpdate = nullptr,
            .handleOpenUrl = nullptr};
  }

  [[nodiscard]] std::optional<QRect> petPlace() const {
    const DesktopPetWindow *const window = m_pet.window();
    return window != nullptr ? std::optional(window->geometry()) : std::nullopt;
  }

  [[nodiscard]] std::unique_ptr<PetStore> makeStore() {
    const Environment &environment = m_surroundings->environment;
    auto store = std::make_unique<PetStore>(PetStore::Parts{
        .clock = m_clock,
        .scheduler = m_scheduler,
        .random = m_random,
        .setting = m_setting,
        .files = m_files,
        .hooks = m_surroundings->hooks(),
        .secrets = m_secrets,
        .notifier = m_notifier,
        .body = m_pet,
        .connectors = AgentConnectors::all(m_surroundings->hooks()),
        .inbox = std::make_unique<Inbox>(m_surroundings->home, environment, m_clock),
        .fleet = std::make_unique<LocalFleet>(m_surroundings->home, m_clock, m_fleetWorkers),
        .usage = LocalUsage::source(m_surroundings->hooks(), m_clock, m_scheduler, m_workers),
        .measure =
            [this](const UsageSnapshot &snapshot) {
              return UsageAnalytics::compute(snapshot.events, snapshot.weekTokens, m_clock.now(),
                                             m_calibrator);
            },
        .learnedPct = [this](std::int64_t tokens) { return m_calibrator.usedPct(tokens); }});
    m_pet.setInteractions(store.get());
    return store;
  }

  Surroundings *m_surroundings;
  SystemClock m_clock;
  QtScheduler m_scheduler;
  SeededRandomSource m_random;
  WorkerPool m_workers{LocalUsage::threads};
  /// Of its own: reading gigabytes of logs must not hold up the look at the sessions.
  WorkerPool m_fleetWorkers{1};
  SettingsFile m_settingsFile;
  Setting m_setting;
  UsageCalibrator m_calibrator;
  PetFiles m_files;
  SecretServiceStore m_secrets;
  DesktopNotifications m_notifications;
  Notifier m_notifier;
  LinuxTrayPresence m_trayPresence;
  QtTrayIcon m_tray;
  X11WindowSystem m_windows;
  QtScreens m_screens;
  QtContextMenu m_menu;
  TrayFrames m_trayFrames;
  DesktopPetController m_pet;
  /// No door is served yet.
  PanelEntries m_panelEntries{{}};
  PanelStage m_panelStage{
      {.scene = m_pet.popoverScene(), .clock = m_clock, .scheduler = m_scheduler}};
  AppDelegate m_delegate;
};

int runConnectCommand(Surroundings &surroundings, const QStringList &words) {
  QTextStream out(stdout);
  QTextStream err(stderr);
  return ConnectCommand::run(words, AgentConnectors::all(surroundings.hooks()), out, err);
}

bool asksForHelp(const QStringList &words) {
  return words.contains(QStringLiteral("--help")) || words.contains(QStringLiteral("-h"));
}

bool asksForVersion(const QStringList &words) {
  return words.contains(QStringLiteral("--version"));
}

bool isMisspelt(const QStringList &words) {
  // Options are Qt's to judge: session managers pass some of their own.
  return !words.isEmpty() && !words.front().startsWith(u'-') &&
         !AppDelegate::understands(words.front());
}

bool needsDesktop(const Environment &environment, const QStringList &words) {
  return !ConnectCommand::isMeant(words) && !asksForHelp(words) && !asksForVersion(words) &&
         !isMisspelt(words) && !EntryModes::isMeant(environment);
}

/// The commands and one-shot modes that need no desktop.
int runWithoutDesktop(Surroundings &surroundings, const QStringList &words) {
  if (ConnectCommand::isMeant(words)) {
    return runConnectCommand(surroundings, words);
  }
  if (asksForHelp(words)) {
    QTextStream(stdout) << usage;
    return success;
  }
  if (asksForVersion(words)) {
    QTextStream(stdout) << "MorvoBar " << QCoreApplication::applicationVersion() << '\n';
    return success;
  }
  if (isMisspelt(words)) {
    QTextStream(stderr) << usage;
    return wrongUsage;
  }
  SettingsFile settings(surroundings.settingsPath());
  static_cast<void>(EntryModes::take({.hooks = surroundings.hooks(),
                                      .files = surroundings.petFiles(),
                                      .setting = Setting(settings, surroundings.environment)}));
  return success;
}

bool hasDesktop(const Environment &environment) {
  return environment.nonEmpty(QStringLiteral("DISPLAY")) ||
         environment.nonEmpty(QStringLiteral("WAYLAND_DISPLAY")) ||
         environment.nonEmpty(QStringLiteral("QT_QPA_PLATFORM"));
}

void chooseFonts() {
  QFont font = QGuiApplication::font();
  font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Color Emoji")});
  QGuiApplication::setFont(font);
}

int runDesktop(Surroundings &surroundings, const QStringList &words) {
  if (!std::ranges::all_of(words, AppDelegate::understands)) {
    QTextStream(stderr) << usage;
    return wrongUsage;
  }
  LocalSingleInstance instance(surroundings.home, surroundings.environment);
  const auto role = instance.settle(words);
  if (role == SingleInstance::Role::handedOver) {
    return success;
  }
  if (role == SingleInstance::Role::unreachable) {
    QTextStream(stderr) << QStringLiteral("MorvoBar 已在运行，但没有回应。\n");
    return failure;
  }
  if (words.contains(AppDelegate::quitWord)) {
    QTextStream(stderr) << QStringLiteral("没有正在运行的 MorvoBar。\n");
    return failure;
  }
  chooseFonts();

  // A session that ends and a service that is stopped ask like this: the pet leaves in good order.
  const TerminationSignals termination([](int /*number*/) { QCoreApplication::quit(); });
  Program program(surroundings);
  instance.onWords([&program](const QStringList &later) { program.open(later); });
  if (!words.isEmpty()) {
    program.open(words);
  }
  return QCoreApplication::exec();
}

/// The words behind the program's name. They are read before there is an application: Qt tells
/// assistive programs nothing of the windows of a second one in a process.
QStringList wordsOf(int argc, char **argv) {
  QStringList words;
  for (int at = 1; at < argc; ++at) {
    words.append(QString::fromLocal8Bit(argv[at]));
  }
  return words;
}

/// The application of what runs without a desktop.
std::unique_ptr<QCoreApplication> bareApplication(const Environment &environment, int &argc,
                                                  char **argv) {
  if (!EntryModes::needsApplication(environment)) {
    return std::make_unique<QCoreApplication>(argc, argv);
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  auto application = std::make_unique<QApplication>(argc, argv);
  chooseFonts();
  return application;
}

} // namespace

int run(int argc, char **argv) {
  QCoreApplication::setApplicationName(QStringLiteral("morvobar"));
  QCoreApplication::setApplicationVersion(QStringLiteral(MORVO_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("morvobar"));
  Surroundings surroundings;
  const QStringList words = wordsOf(argc, argv);
  if (!needsDesktop(surroundings.environment, words)) {
    // These serve scripts and machines without a desktop.
    const auto application = bareApplication(surroundings.environment, argc, argv);
    return runWithoutDesktop(surroundings, words);
  }
  if (!hasDesktop(surroundings.environment)) {
    QTextStream(stderr) << QStringLiteral(
        "这里没有图形桌面（DISPLAY 与 WAYLAND_DISPLAY 都未设置），MorvoBar 无法启动。\n");
    return failure;
  }
  X11Platform::chooseQtPlatform(surroundings.environment);
  const QApplication application(argc, argv);
  QGuiApplication::setQuitOnLastWindowClosed(false);
  return runDesktop(surroundings, QCoreApplication::arguments().sliced(1));
}

} // namespace morvo::MorvoBarApp
