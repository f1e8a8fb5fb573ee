#include "BuiltInPet.h"
#include "pet/PetPackStore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace morvo {
namespace {

using test::BuiltInPet;

constexpr int side = 512;

/// Mean difference of the channels of two frames, of every fourth line.
double difference(const QImage &first, const QImage &second) {
  constexpr int step = 4;
  double sum = 0;
  qsizetype count = 0;
  for (int y = 0; y < first.height(); y += step) {
    const uchar *left = first.constScanLine(y);
    const uchar *right = second.constScanLine(y);
    for (qsizetype at = 0; at < first.bytesPerLine(); ++at) {
      sum += std::abs(left[at] - right[at]);
      ++count;
    }
  }
  return sum / static_cast<double>(count);
}

bool borderIsEmpty(const QImage &image) {
  const auto alpha = [&image](int x, int y) {
    return qAlpha(reinterpret_cast<const QRgb *>(image.constScanLine(y))[x]);
  };
  for (int at = 0; at < side; ++at) {
    if (alpha(at, 0) + alpha(at, side - 1) + alpha(0, at) + alpha(side - 1, at) != 0) {
      return false;
    }
  }
  return true;
}

/// The lowest line with a pixel of the body; light and water are fainter.
int lowestLine(const QImage &image) {
  constexpr int solid = 200;
  for (int y = image.height() - 1; y >= 0; --y) {
    const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
    if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) > solid; })) {
      return y;
    }
  }
  return -1;
}

class PetArtTest : public testing::TestWithParam<std::string> {
protected:
  void SetUp() override {
    const PetFiles files{.home = HomeFolder{QStringLiteral("/nowhere")},
                         .resources = BuiltInPet::resources()};
    const auto pack = PetPackStore::load(files, m_pet.id());
    ASSERT_TRUE(pack);
    m_pack = *pack;
  }

  /// The steps from each frame to the next; the last one leads back to the first.
  [[nodiscard]] std::vector<double> steps(const QString &set) const {
    std::vector<double> result;
    const int count = m_pet.frames(set);
    const QImage first = m_pet.frame(set, 0);
    QImage from = first;
    for (int index = 1; index <= count; ++index) {
      const QImage to = index < count ? m_pet.frame(set, index) : first;
      result.push_back(difference(from, to));
      from = to;
    }
    return result;
  }

  BuiltInPet m_pet{GetParam()};
  PetPack m_pack;
};

TEST_P(PetArtTest, HasTheSetsThatEveryPetNeedsAndTwoOfItsOwn) {
  const QStringList needed{
      QStringLiteral("idle"),    QStringLiteral("sleep"),     QStringLiteral("watching"),
      QStringLiteral("code"),    QStringLiteral("celebrate"), QStringLiteral("alert"),
      QStringLiteral("greet"),   QStringLiteral("petted"),    QStringLiteral("walk"),
      QStringLiteral("carried"), QStringLiteral("tossed")};
  for (const QString &set : needed) {
    EXPECT_GE(m_pet.frames(set), 2) << set.toStdString();
  }
  EXPECT_GE(m_pack.actions.size(), static_cast<std::size_t>(needed.size() + 2));
  constexpr int idleFrames = 48;
  EXPECT_GE(m_pet.frames(QStringLiteral("idle")), idleFrames);
}

TEST_P(PetArtTest, EverySetHasItsFramesInOneRowAndNothingElse) {
  for (const auto &action : m_pack.actions) {
    const int count = m_pet.frames(action.frameSet);
    EXPECT_EQ(QDir(m_pet.folder(action.frameSet)).entryList(QDir::Files).size(), count);
    for (int index = 0; index < count; ++index) {
      EXPECT_TRUE(QFile::exists(m_pet.folder(action.frameSet) + u'/' + QString::number(index) +
                                QStringLiteral(".png")))
          << action.id.toStdString() << ' ' << index;
    }
  }
}

TEST_P(PetArtTest, NothingIsCutAtTheBorderOfTheCanvas) {
  for (const auto &action : m_pack.actions) {
    for (int index = 0; index < m_pet.frames(action.frameSet); ++index) {
      const QImage image = m_pet.frame(action.frameSet, index);
      ASSERT_EQ(image.size(), QSize(side, side));
      EXPECT_TRUE(borderIsEmpty(image)) << action.id.toStdString() << ' ' << index;
    }
  }
}

TEST_P(PetArtTest, LoopsCloseWithoutASeam) {
  for (const auto &action : m_pack.actions) {
    if (!action.loop) {
      continue;
    }
    const std::vector<double> all = steps(action.frameSet);
    const double seam = all.back();
    const std::size_t last = all.size() - 1;
    const double neighbours = std::max({all[0], all[1], all[last - 1], all[last - 2]});
    EXPECT_LE(seam, neighbours) << action.id.toStdString();
    EXPECT_GT(*std::ranges::max_element(all), 0) << action.id.toStdString();
  }
}

TEST_P(PetArtTest, OneShotsBeginAndEndOnTheRestPose) {
  const QImage rest = m_pet.frame(QStringLiteral("idle"), 0);
  for (const auto &action : m_pack.actions) {
    if (!action.loop) {
      EXPECT_EQ(m_pet.frame(action.frameSet, 0), rest) << action.id.toStdString();
      EXPECT_EQ(m_pet.frame(action.frameSet, m_pet.frames(action.frameSet) - 1), rest)
          << action.id.toStdString();
    }
  }
}

TEST_P(PetArtTest, StandsOnTheSameLineInEverySet) {
  constexpr int tolerance = 5;
  const int base = lowestLine(m_pet.frame(QStringLiteral("idle"), 0));
  for (const auto &action : m_pack.actions) {
    if (action.frameSet == QStringLiteral("tossed")) {
      continue; // In the air.
    }
    int lowest = 0;
    for (int index = 0; index < m_pet.frames(action.frameSet); ++index) {
      lowest = std::max(lowest, lowestLine(m_pet.frame(action.frameSet, index)));
    }
    EXPECT_NEAR(lowest, base, tolerance) << action.id.toStdString();
  }
  for (const QString &set : {QStringLiteral("idle"), QStringLiteral("sleep"),
                             QStringLiteral("watching"), QStringLiteral("code")}) {
    for (int index = 0; index < m_pet.frames(set); ++index) {
      EXPECT_NEAR(lowestLine(m_pet.frame(set, index)), base, tolerance)
          << set.toStdString() << ' ' << index;
    }
  }
}

TEST_P(PetArtTest, TakesNoMoreThanTwelveMegabytes) {
  constexpr qint64 most = 12'000'000;
  qint64 sum = 0;
  for (const auto &action : m_pack.actions) {
    for (const QFileInfo &file : QDir(m_pet.folder(action.frameSet)).entryInfoList(QDir::Files)) {
      sum += file.size();
    }
  }
  EXPECT_LE(sum, most);
}

INSTANTIATE_TEST_SUITE_P(BuiltIn, PetArtTest, testing::ValuesIn(BuiltInPet::all()),
                         [](const auto &instance) { return instance.param; });

/// The tray's icon of a pet as one list of channels.
std::vector<int> trayIcon(const BuiltInPet &pet) {
  constexpr int cells = 13;
  const QImage icon = pet.frame(QStringLiteral("idle"), 0)
                          .scaled(cells, cells, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  std::vector<int> channels;
  for (int y = 0; y < cells; ++y) {
    const uchar *line = icon.constScanLine(y);
    channels.insert(channels.end(), line, line + qsizetype{cells} * 4);
  }
  return channels;
}

TEST(BuiltInPetsTest, NoTwoPetsLookAlikeInTheTray) {
  constexpr double apart = 20;
  const auto ids = BuiltInPet::all();
  ASSERT_FALSE(ids.empty());
  for (std::size_t one = 0; one < ids.size(); ++one) {
    const auto first = trayIcon(BuiltInPet(ids[one]));
    EXPECT_GT(std::ranges::max(first), 0);
    for (std::size_t two = one + 1; two < ids.size(); ++two) {
      const auto second = trayIcon(BuiltInPet(ids[two]));
      double sum = 0;
      for (std::size_t at = 0; at < first.size(); ++at) {
        sum += std::abs(first[at] - second[at]);
      }
      EXPECT_GT(sum / static_cast<double>(first.size()), apart) << ids[one] << ' ' << ids[two];
    }
  }
}

} // namespace
} // namespace morvo
