#include "BuiltInPet.h"
#include "base/RandomSource.h"
#include "companion/Personas.h"
#include "pet/MenubarFrames.h"
#include "pet/PetPackStore.h"
#include "pet/PetScene.h"
#include "support/ManualClock.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <algorithm>
#include <iterator>
#include <vector>

namespace morvo {
namespace {

using test::BuiltInPet;

constexpr int canvas = 512;

const QString idle = QStringLiteral("idle");

std::vector<QImage> allFrames(const QString &set) {
  const BuiltInPet pet("anime");
  std::vector<QImage> frames;
  for (int index = 0; index < pet.frames(set); ++index) {
    frames.push_back(pet.frame(set, index));
  }
  return frames;
}

/// The smallest rectangle that holds everything visible.
QRect ink(const QImage &image) {
  QRect box;
  for (int y = 0; y < image.height(); ++y) {
    const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if (qAlpha(line[x]) != 0) {
        box |= QRect(x, y, 1, 1);
      }
    }
  }
  return box;
}

/// Dark pixels about the eyes of a resting frame.
int darkAboutTheEyes(const QImage &image) {
  constexpr int dark = 96;
  constexpr QRect eyes(165, 205, 140, 70);
  int count = 0;
  for (int y = eyes.top(); y <= eyes.bottom(); ++y) {
    for (int x = eyes.left(); x <= eyes.right(); ++x) {
      count += qGray(image.pixel(x, y)) < dark ? 1 : 0;
    }
  }
  return count;
}

TEST(AnimeArtTest, BlinksTwiceInTheIdleLoop) {
  std::vector<int> counts;
  std::ranges::transform(allFrames(idle), std::back_inserter(counts), darkAboutTheEyes);
  const int open = std::ranges::max(counts);
  int blinks = 0;
  for (std::size_t index = 1; index < counts.size(); ++index) {
    blinks += counts[index] < open / 2 && counts[index - 1] >= open / 2 ? 1 : 0;
  }
  EXPECT_EQ(blinks, 2);
}

TEST(AnimeArtTest, BreathesVisiblyInTheIdleLoop) {
  int highest = canvas;
  int lowest = 0;
  for (const QImage &image : allFrames(idle)) {
    highest = std::min(highest, ink(image).top());
    lowest = std::max(lowest, ink(image).top());
  }
  EXPECT_GE(lowest - highest, 4);
}

TEST(AnimeArtTest, FillsTheFramesHeight) {
  EXPECT_GE(ink(allFrames(idle).front()).height(), canvas * 4 / 5);
}

TEST(AnimeArtTest, ChangesWithEveryFrameOfEveryLoop) {
  for (const QString &set : {idle, QStringLiteral("sleep"), QStringLiteral("watching"),
                             QStringLiteral("code"), QStringLiteral("walk")}) {
    const auto frames = allFrames(set);
    for (std::size_t index = 1; index < frames.size(); ++index) {
      EXPECT_NE(frames[index], frames[index - 1]) << set.toStdString() << ' ' << index;
    }
  }
}

class AnimePersonaTest : public testing::Test {
protected:
  QTemporaryDir m_home;
  PetFiles m_files{.home = HomeFolder{m_home.path()}, .resources = BuiltInPet::resources()};
};

TEST_F(AnimePersonaTest, ThePackIsThePersonas) {
  const MorvoPersona &persona = Personas::anime();
  const auto pack = PetPackStore::load(m_files, persona.id);
  ASSERT_TRUE(pack);
  EXPECT_EQ(pack->id, persona.id);
  EXPECT_EQ(pack->displayName, persona.name);
  EXPECT_EQ(pack->tier, persona.tier);
}

TEST_F(AnimePersonaTest, SelectingThePersonaShowsIt) {
  MorvoSprites sprites(m_files);
  test::MemorySettings settings;
  test::ManualClock clock;
  SeededRandomSource random(1);
  PetScene scene({280, 280}, m_files, sprites, Setting(settings, Environment()), clock, random);
  scene.present();
  const auto before = scene.pet()->texture();
  scene.setPersona(Personas::anime().id);
  const auto after = scene.pet()->texture();
  ASSERT_TRUE(before && after);
  EXPECT_TRUE(before->path.contains(QStringLiteral("/pets/morvo/idle/")));
  EXPECT_TRUE(after->path.contains(QStringLiteral("/pets/anime/idle/")));
  EXPECT_TRUE(scene.react(QStringLiteral("celebrate")));
}

struct Warmth {
  double red = 0;
  double blue = 0;
};

/// Sums of the colours of all cells of a pet's icons.
Warmth warmth(const PetFiles &files, const QString &pet) {
  Warmth sum;
  for (const QImage &icon : MenubarFrames(files).cells(pet)) {
    for (int y = 0; y < icon.height(); ++y) {
      for (int x = 0; x < icon.width(); ++x) {
        const QColor cell = icon.pixelColor(x, y);
        sum.red += cell.redF() * cell.alphaF();
        sum.blue += cell.blueF() * cell.alphaF();
      }
    }
  }
  return sum;
}

TEST_F(AnimePersonaTest, IsAsWarmInTheTrayAsTheDefaultPetIsBlue) {
  const Warmth own = warmth(m_files, Personas::anime().id);
  const Warmth other = warmth(m_files, Personas::morvo().id);
  EXPECT_GT(own.red, 1.4 * own.blue);
  EXPECT_GT(other.blue, 1.2 * other.red);
}

} // namespace
} // namespace morvo
