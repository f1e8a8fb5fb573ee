#include "pet/FrameFile.h"
#include "pet/MorvoSprites.h"
#include "pet/PackedPicture.h"
#include "pet/PetPackStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

// What a built-in pet's frames cost: the time from the choice of a set to its first picture at 280
// points, and the memory of all sets at that size.

namespace {

using namespace morvo;

constexpr int points = 280;

const QTemporaryDir &emptyHome() {
  static const QTemporaryDir home;
  return home;
}

PetFiles files() {
  return {.home = HomeFolder{emptyHome().path()}, .resources = QStringLiteral(MORVO_RESOURCES)};
}

QImage shown(const SpriteFrame &frame) {
  return FrameFile::decode(frame.path)
      .convertToFormat(QImage::Format_ARGB32_Premultiplied)
      .scaled(points, points, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

void firstFrame(benchmark::State &state, const char *set) {
  for ([[maybe_unused]] const auto step : state) {
    MorvoSprites sprites(files());
    const auto frames = sprites.frames(QString::fromLatin1(set));
    if (frames.empty()) {
      state.SkipWithError("no frames");
      return;
    }
    benchmark::DoNotOptimize(shown(frames.front()));
  }
}

void allSets(benchmark::State &state) {
  qint64 pictures = 0;
  qint64 packed = 0;
  int count = 0;
  for ([[maybe_unused]] const auto step : state) {
    pictures = 0;
    packed = 0;
    count = 0;
    MorvoSprites sprites(files());
    const auto pack = PetPackStore::load(files(), QStringLiteral("morvo"));
    if (!pack) {
      state.SkipWithError("no pack");
      return;
    }
    for (const auto &action : pack->actions) {
      for (const SpriteFrame &frame : sprites.frames(action.frameSet)) {
        const QImage picture = shown(frame);
        pictures += picture.sizeInBytes();
        packed += PackedPicture(picture).bytes();
        ++count;
      }
    }
  }
  constexpr double megabyte = 1e6;
  state.counters["frames"] = count;
  state.counters["MB_pictures"] = static_cast<double>(pictures) / megabyte;
  state.counters["MB_packed"] = static_cast<double>(packed) / megabyte;
}

BENCHMARK_CAPTURE(firstFrame, idle, "idle")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(firstFrame, celebrate, "celebrate")->Unit(benchmark::kMillisecond);
BENCHMARK(allSets)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace

BENCHMARK_MAIN();
