#include "base/Clock.h"
#include "base/RandomSource.h"
#include "pet/ScenePainter.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace morvo {
namespace {

constexpr int canvasSide = 512;
constexpr int framesPerSet = 60;
constexpr int setCount = 10;
constexpr double stageSide = 200;
/// The pet's square on the desktop at its usual size.
constexpr int windowSide = 280;
const QString persona = QStringLiteral("custom-bench");

/// Moves on when told.
class SteppedClock final : public Clock {
public:
  [[nodiscard]] WallTime now() const override { return {}; }
  [[nodiscard]] Instant instant() const override { return m_instant; }
  void advance(Duration by) { m_instant += by; }

private:
  Instant m_instant{std::chrono::hours(1)};
};

/// Always what was never set.
class NoSettings final : public SettingsStore {
public:
  [[nodiscard]] std::optional<QVariant> object(const QString & /*key*/) const override {
    return std::nullopt;
  }
  void set(const QString & /*key*/, const QVariant & /*value*/) override {}
  void remove(const QString & /*key*/) override {}
  void atOnce(const std::function<void()> &change) override { change(); }
};

QString setName(int index) {
  return index == 0 ? QStringLiteral("idle") : QStringLiteral("action%1").arg(index);
}

/// A body that fills half of the canvas, with the grain that frames of a video have.
QImage bodyPicture(int set, int frame) {
  QImage image(canvasSide, canvasSide, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QRadialGradient shade(canvasSide * 0.4, canvasSide * 0.4, canvasSide * 0.6);
    shade.setColorAt(0, Qt::white);
    shade.setColorAt(1, QColor::fromHsv(set * 30, 200, 160));
    painter.setBrush(shade);
    painter.drawEllipse(QRectF(60, 40 + frame, canvasSide - 120, canvasSide - 60 - frame));
  }
  SeededRandomSource random(static_cast<std::uint64_t>(set * framesPerSet + frame));
  for (int y = 0; y < canvasSide; ++y) {
    auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
    for (int x = 0; x < canvasSide; ++x) {
      if (qAlpha(line[x]) == 255) {
        const auto grain = static_cast<int>(random() & 7U);
        line[x] = qRgb(std::max(qRed(line[x]) - grain, 0), std::max(qGreen(line[x]) - grain, 0),
                       std::max(qBlue(line[x]) - grain, 0));
      }
    }
  }
  return image;
}

/// A pet of ten actions of sixty frames, drawn once for all benchmarks.
const PetFiles &petFiles() {
  static const QTemporaryDir folder;
  static const PetFiles files = [] {
    PetFiles made{.home = {folder.path()}, .resources = folder.filePath(QStringLiteral("none"))};
    for (int set = 0; set < setCount; ++set) {
      const QString path = made.userDirectory(persona) + u'/' + setName(set);
      QDir().mkpath(path);
      for (int frame = 0; frame < framesPerSet; ++frame) {
        if (!bodyPicture(set, frame).save(path + QStringLiteral("/%1.png").arg(frame))) {
          qFatal("a frame could not be written");
        }
      }
    }
    QFile pack(made.userDirectory(persona) + QStringLiteral("/manifest.json"));
    if (!pack.open(QIODevice::WriteOnly) || pack.write(R"({"motion":{"style":"floaty"}})") < 0) {
      qFatal("the pack could not be written");
    }
    return made;
  }();
  return files;
}

/// The pet on its stage, painted as its window does.
class Show {
public:
  explicit Show(double ratio, const PetFiles &files = petFiles(), const QString &pet = persona)
      : m_ratio(ratio),
        m_canvas(QSize(windowSide, windowSide) * ratio, QImage::Format_ARGB32_Premultiplied),
        m_sprites(files), m_scene({stageSide, stageSide}, files, m_sprites,
                                  Setting(m_settings, Environment()), m_clock, m_random) {
    m_sprites.setPersona(pet);
    m_scene.present();
    m_scene.setQuietMode(true);
  }

  /// One picture of the animation.
  void tick() {
    m_clock.advance(m_scene.frameInterval().value_or(seconds(1)));
    m_scene.advance(m_clock.instant());
    paint();
  }
  void paint() {
    m_canvas.fill(Qt::transparent);
    QPainter painter(&m_canvas);
    painter.scale(m_ratio, m_ratio);
    m_painter.paint(painter, m_scene, QRectF(0, 0, windowSide, windowSide), m_ratio);
  }
  /// Until the animation has come round.
  void playOnce() {
    for (int frame = 0; frame <= framesPerSet; ++frame) {
      tick();
    }
  }
  void sleep(Duration time) {
    m_clock.advance(time);
    m_scene.advance(m_clock.instant());
  }
  [[nodiscard]] PetScene &scene() { return m_scene; }
  [[nodiscard]] const ScenePainter &painter() const { return m_painter; }

private:
  double m_ratio;
  QImage m_canvas;
  NoSettings m_settings;
  SteppedClock m_clock;
  SeededRandomSource m_random{1};
  MorvoSprites m_sprites;
  PetScene m_scene;
  ScenePainter m_painter;
};

/// Megabytes of this process that are in memory.
double residentMegabytes() {
  QFile status(QStringLiteral("/proc/self/statm"));
  if (!status.open(QIODevice::ReadOnly)) {
    return 0;
  }
  constexpr double pagesPerMegabyte = 256;
  return status.readAll().split(' ').at(1).toDouble() / pagesPerMegabyte;
}

void playSeconds(benchmark::State &state, Show &show) {
  show.playOnce();
  for (auto _ : state) {
    for (int frame = 0; frame < 16; ++frame) {
      show.tick();
    }
  }
  state.counters["keptMB"] = static_cast<double>(show.painter().bytesKept()) / 1e6;
  state.counters["packedMB"] = static_cast<double>(show.painter().bytesPacked()) / 1e6;
  state.counters["decoded"] = static_cast<double>(show.painter().framesDecoded());
}

/// A second of an idle pet. The argument is the device's pixel ratio in quarters.
void idleSecond(benchmark::State &state) {
  Show show(static_cast<double>(state.range(0)) / 4);
  playSeconds(state, show);
}
BENCHMARK(idleSecond)
    ->Arg(4)
    ->Arg(6)
    ->Arg(8)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

/// The same of a pet that the program brings.
void builtInIdleSecond(benchmark::State &state, const char *pet) {
  static const QTemporaryDir nobody;
  const PetFiles files{.home = {nobody.path()}, .resources = QStringLiteral(MORVO_RESOURCES)};
  Show show(static_cast<double>(state.range(0)) / 4, files, QString::fromLatin1(pet));
  playSeconds(state, show);
}
BENCHMARK_CAPTURE(builtInIdleSecond, morvo, "morvo")
    ->Arg(4)
    ->Arg(6)
    ->Arg(8)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(builtInIdleSecond, anime, "anime")
    ->Arg(4)
    ->Arg(6)
    ->Arg(8)
    ->MeasureProcessCPUTime()
    ->Unit(benchmark::kMillisecond);

/// From an order to its first picture, with the frames on disk.
void reactToFirstPicture(benchmark::State &state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto show = std::make_unique<Show>(1);
    show->playOnce();
    state.ResumeTiming();
    show->scene().react(setName(1));
    show->paint();
    state.PauseTiming();
    show.reset();
    state.ResumeTiming();
  }
}
BENCHMARK(reactToFirstPicture)->Iterations(20)->Unit(benchmark::kMillisecond);

/// What a pet of ten actions takes after each of them was played twice.
void everyActionPlayed(benchmark::State &state) {
  const double before = residentMegabytes();
  double after = 0;
  for (auto _ : state) {
    Show show(static_cast<double>(state.range(0)) / 4);
    for (int round = 0; round < 2; ++round) {
      for (int set = 0; set < setCount; ++set) {
        show.scene().react(setName(set));
        show.playOnce();
      }
    }
    after = residentMegabytes();
  }
  state.counters["grownMB"] = after - before;
  state.counters["residentMB"] = after;
}
BENCHMARK(everyActionPlayed)->Arg(4)->Arg(8)->Iterations(1)->Unit(benchmark::kMillisecond);

/// What it costs to wake after a week.
void weekAsleep(benchmark::State &state) {
  Show show(1);
  for (auto _ : state) {
    show.sleep(std::chrono::hours(24 * 7));
  }
}
BENCHMARK(weekAsleep)->Iterations(1000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace morvo

int main(int argc, char **argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QGuiApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
