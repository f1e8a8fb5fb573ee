#include "app/Fakes.h"
#include "app/PanelWindow.h"
#include "app/PetStore.h"
#include "base/QtScheduler.h"
#include "base/SystemFileLayer.h"
#include "pet/MorvoSprites.h"
#include "pet/PetScene.h"
#include "support/MemorySecrets.h"
#include "support/MemorySettings.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTimer>
#include <QWheelEvent>
#include <QtPlugin>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <unistd.h>
#include <vector>

// What scrolling costs in the panel of the program: a thousand messages of mixed length, a wheel
// turned without a pause. Prints the processor time of each frame, with all that led to it, and the
// resident memory. Needs a display.

Q_IMPORT_PLUGIN(Morvo_PanelsPlugin)

namespace {

using namespace morvo;
using namespace std::chrono_literals;

constexpr int messageCount = 1000;
constexpr auto settling = 2s;
constexpr auto scrolling = 10s;
/// A wheel in a hurry.
constexpr auto notchPeriod = 40ms;
constexpr int notch = 120;
constexpr QSizeF stageSize(180, 180);

double processorMilliseconds() {
  timespec used{};
  static_cast<void>(clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used));
  return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

double residentMegabytes() {
  QFile pages(QStringLiteral("/proc/self/statm"));
  static_cast<void>(pages.open(QIODevice::ReadOnly));
  const double resident = pages.readAll().split(' ').value(1).toDouble();
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1024 * 1024);
}

std::vector<ChatMessage> messages() {
  std::vector<ChatMessage> all;
  for (int i = 0; i < messageCount; ++i) {
    const bool isLong = i % 7 == 0;
    all.push_back(
        {.role = i % 2 == 0 ? ChatMessage::Role::pet : ChatMessage::Role::user,
         .text = (QStringLiteral("第 %1 条，") +
                  (isLong ? QStringLiteral("那个 user 可能是 nil，先加个 guard 兜一下 🎉 再看看。")
                          : QStringLiteral("好")))
                     .arg(i)
                     .repeated(1 + (isLong ? i % 5 : 0))});
  }
  return all;
}

QQuickItem *timelineIn(QQuickItem *item) {
  if (item->inherits("QQuickListView") && item->isVisible()) {
    return item;
  }
  for (QQuickItem *child : item->childItems()) {
    if (QQuickItem *const found = timelineIn(child)) {
      return found;
    }
  }
  return nullptr;
}

/// Turns the wheel over the timeline, to its beginning and back, and notes each frame.
class Hand final : public QObject {
public:
  Hand(QQuickWindow &window, QQuickItem &timeline)
      : m_window(&window), m_timeline(&timeline),
        m_place(timeline.property("contentY").toDouble()) {
    connect(&window, &QQuickWindow::frameSwapped, this, [this] {
      const double now = processorMilliseconds();
      m_frames.push_back(now - m_used);
      m_used = now;
      const double place = m_timeline->property("contentY").toDouble();
      m_travelled += std::abs(place - m_place);
      m_place = place;
    });
    m_turning.setTimerType(Qt::PreciseTimer);
    connect(&m_turning, &QTimer::timeout, this, &Hand::turn);
    m_time.start();
    m_turning.start(notchPeriod);
  }

  /// Processor time of each frame, in milliseconds.
  [[nodiscard]] const std::vector<double> &frames() const { return m_frames; }
  /// In points.
  [[nodiscard]] double travelled() const { return m_travelled; }

private:
  void turn() {
    if (m_timeline->property("atYBeginning").toBool()) {
      m_direction = -1;
    } else if (m_timeline->property("atYEnd").toBool()) {
      m_direction = 1;
    }
    const QPointF place =
        m_timeline->mapToScene(QPointF(m_timeline->width() / 2, m_timeline->height() / 2));
    QWheelEvent event(place, m_window->mapToGlobal(place), {}, {0, notch * m_direction},
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    // The time between two notches is the speed of the hand.
    event.setTimestamp(static_cast<quint64>(m_time.elapsed()));
    QCoreApplication::sendEvent(m_window, &event);
  }

  QQuickWindow *m_window;
  QQuickItem *m_timeline;
  QTimer m_turning;
  QElapsedTimer m_time;
  int m_direction = 1;
  double m_used = processorMilliseconds();
  double m_place;
  double m_travelled = 0;
  std::vector<double> m_frames;
};

void runFor(std::chrono::milliseconds time) {
  QEventLoop loop;
  QTimer::singleShot(time, &loop, &QEventLoop::quit);
  loop.exec();
}

int measure(PetStore &store, QQuickWindow &window) {
  runFor(settling);
  const double empty = residentMegabytes();
  PetStore::Picture picture;
  picture.messages = messages();
  store.show(picture);
  runFor(settling);
  const double full = residentMegabytes();
  QQuickItem *const timeline = timelineIn(window.contentItem());
  if (timeline == nullptr) {
    static_cast<void>(std::fputs("no timeline was found\n", stderr));
    return 1;
  }
  const double before = processorMilliseconds();
  const Hand hand(window, *timeline);
  runFor(scrolling);
  const double used = processorMilliseconds() - before;
  std::vector<double> frames = hand.frames();
  if (frames.empty()) {
    static_cast<void>(std::fputs("nothing was drawn\n", stderr));
    return 1;
  }
  std::ranges::sort(frames);
  const auto at = [&frames](double share) {
    return frames[static_cast<std::size_t>(share * static_cast<double>(frames.size() - 1))];
  };
  std::printf("scrolled %.0f points in 10 s by %zu frames; ms of processor a frame: median %.2f, "
              "95 of 100 %.2f, worst %.2f; of one core %.0f %%\n",
              hand.travelled(), frames.size(), at(0.5), at(0.95), frames.back(),
              100 * used / std::chrono::duration<double, std::milli>(scrolling).count());
  std::printf("resident (MB): empty %.1f, %d messages %.1f, scrolled %.1f\n", empty, messageCount,
              full, residentMegabytes());
  return 0;
}

} // namespace

int main(int argc, char **argv) {
  const QApplication application(argc, argv);
  QFont font = QGuiApplication::font();
  font.setFamilies({QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Noto Color Emoji")});
  QGuiApplication::setFont(font);
  const QTemporaryDir folder;
  const HomeFolder home{folder.path()};
  SystemClock clock;
  QtScheduler scheduler;
  SeededRandomSource random(7);
  SystemFileLayer layer;
  test::MemorySettings settings;
  test::MemorySecrets secrets;
  test::FakeNotifications notifications;
  test::FakeBody body;
  const Environment environment{QHash<QString, QString>{}};
  const Setting setting(settings, environment);
  const PetFiles files{.home = home, .resources = QStringLiteral(MORVO_RESOURCES)};
  Notifier notifier(setting, notifications);
  PetStore store({.clock = clock,
                  .scheduler = scheduler,
                  .random = random,
                  .setting = setting,
                  .files = files,
                  .hooks = {.home = home, .environment = environment, .files = &layer},
                  .secrets = secrets,
                  .notifier = notifier,
                  .body = body,
                  .connectors = {},
                  .inbox = nullptr});
  MorvoSprites sprites(files);
  PetScene scene(stageSize, files, sprites, setting, clock, random);
  PanelStage stage({.scene = scene, .clock = clock, .scheduler = scheduler});
  PanelEntries entries({});
  PanelWindow panel({.store = store,
                     .entries = entries,
                     .stage = stage,
                     .petPlace = {},
                     .onScreen = {},
                     .source = QUrl(PanelWindow::mainPanel)});
  panel.setTransient(false);
  panel.show({}, {});
  const auto windows = QGuiApplication::topLevelWindows();
  const auto found = std::ranges::find_if(
      windows, [](QWindow *window) { return qobject_cast<QQuickWindow *>(window) != nullptr; });
  return found == windows.end() ? 1 : measure(store, *qobject_cast<QQuickWindow *>(*found));
}
