#include "base/Json.h"
#include "pet/ContentFile.h"
#include "pet/MenubarFrames.h"
#include "pet/MorvoSprites.h"

#include <array>
#include <gtest/gtest.h>
#include <utility>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <vector>

namespace morvo {
namespace {

QString petFolder() { return QStringLiteral(MORVO_PET_RESOURCES "/pets/morvo"); }

QImage frame(const QString &state, int index) {
  return QImage(QStringLiteral("%1/%2/%3.png").arg(petFolder(), state).arg(index))
      .convertToFormat(QImage::Format_ARGB32);
}

QJsonObject json(const QString &name) {
  QFile file(petFolder() + u'/' + name);
  return file.open(QIODevice::ReadOnly) ? Json::parseObject(file.readAll()).value_or(QJsonObject())
                                        : QJsonObject();
}

/// Mean difference of the channels of two frames, of every eighth line.
double difference(const QImage &first, const QImage &second) {
  constexpr int step = 8;
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
  const int last = image.width() - 1;
  for (int at = 0; at <= last; ++at) {
    if (qAlpha(image.pixel(at, 0)) + qAlpha(image.pixel(at, last)) + qAlpha(image.pixel(0, at)) +
            qAlpha(image.pixel(last, at)) !=
        0) {
      return false;
    }
  }
  return true;
}

struct StateRow {
  const char *name;
  int frames;
  bool loop;
};

class FrameSetTest : public testing::TestWithParam<StateRow> {
protected:
  [[nodiscard]] static QString state() { return QString::fromLatin1(GetParam().name); }
};

TEST_P(FrameSetTest, HasItsFramesAndNoOthers) {
  const QStringList files = QDir(petFolder() + u'/' + state()).entryList(QDir::Files);
  EXPECT_EQ(files.size(), GetParam().frames);
  for (int index = 0; index < GetParam().frames; ++index) {
    EXPECT_TRUE(files.contains(QStringLiteral("%1.png").arg(index)));
  }
}

TEST_P(FrameSetTest, NothingIsCutAtTheBorderOfTheCanvas) {
  for (int index = 0; index < GetParam().frames; ++index) {
    const QImage image = frame(state(), index);
    ASSERT_EQ(image.size(), QSize(512, 512));
    EXPECT_TRUE(borderIsEmpty(image)) << index;
  }
}

TEST_P(FrameSetTest, ALoopClosesWithoutAJumpAndAOneShotReturnsToRest) {
  const int last = GetParam().frames - 1;
  if (!GetParam().loop) {
    const QImage rest = frame(QStringLiteral("idle"), 0);
    EXPECT_EQ(frame(state(), 0), rest);
    EXPECT_EQ(frame(state(), last), rest);
    return;
  }
  double widest = 0;
  for (int index = 0; index < last; ++index) {
    widest = std::max(widest, difference(frame(state(), index), frame(state(), index + 1)));
  }
  EXPECT_LE(difference(frame(state(), last), frame(state(), 0)), widest);
  EXPECT_GT(widest, 0);
}

INSTANTIATE_TEST_SUITE_P(Morvo, FrameSetTest,
                         testing::Values(StateRow{"idle", 36, true},
                                         StateRow{"celebrate", 28, false},
                                         StateRow{"alert", 24, false}, StateRow{"sleep", 24, true},
                                         StateRow{"greet", 24, false},
                                         StateRow{"petted", 24, false},
                                         StateRow{"watching", 24, true}),
                         [](const auto &instance) { return instance.param.name; });

TEST(PetArtTest, EveryActionOfThePackHasFrames) {
  const QJsonArray actions = json(QStringLiteral("manifest.json")).value(u"actions").toArray();
  EXPECT_EQ(actions.size(), 7);
  for (const QJsonValue action : actions) {
    EXPECT_TRUE(QDir(petFolder() + u'/' + action[u"frameSet"].toString()).exists());
    EXPECT_FALSE(action[u"label"].toString().isEmpty());
  }
}

TEST(PetArtTest, EveryReactionAndLoopNamesAnAction) {
  const QJsonObject pack = json(QStringLiteral("manifest.json"));
  QStringList ids;
  for (const QJsonValue action : pack.value(u"actions").toArray()) {
    ids << action[u"id"].toString();
  }
  for (const QStringView list : {QStringView(u"reactions"), QStringView(u"loops")}) {
    const QJsonArray rules = pack.value(list).toArray();
    EXPECT_FALSE(rules.isEmpty());
    for (const QJsonValue rule : rules) {
      EXPECT_TRUE(ids.contains(rule[u"action"].toString()));
    }
  }
}

TEST(PetArtTest, SpeaksInSevenScenesInShortLinesNoneOfThemTwice) {
  const QJsonObject lines = json(QStringLiteral("lines.json"));
  const std::array<std::pair<QString, int>, 7> scenes{{
      {QStringLiteral("done"), 4},
      {QStringLiteral("needsInput"), 3},
      {QStringLiteral("petted"), 4},
      {QStringLiteral("digest"), 3},
      {QStringLiteral("usage"), 3},
      {QStringLiteral("reflect"), 4},
      {QStringLiteral("rest"), 4},
  }};
  QStringList said;
  for (const auto &[bucket, least] : scenes) {
    const QJsonArray scene = lines.value(bucket).toArray();
    EXPECT_GE(scene.size(), least) << bucket.toStdString();
    for (const QJsonValue line : scene) {
      EXPECT_GE(line.toString().size(), 8) << line.toString().toStdString();
      EXPECT_LE(line.toString().size(), 22) << line.toString().toStdString();
      said.append(line.toString());
    }
  }
  EXPECT_EQ(said.removeDuplicates(), 0);
}

TEST(PetArtTest, TheCropSquareTakenAtBuildTimeIsTheOneTheFramesGive) {
  const QTemporaryDir home;
  const PetFiles files{.home = HomeFolder{home.path()},
                       .resources = QStringLiteral(MORVO_PET_RESOURCES)};
  MorvoSprites sprites(files);
  ASSERT_TRUE(ContentFile::read(petFolder()));
  EXPECT_EQ(sprites.contentRect(), *ContentFile::read(petFolder()));
  EXPECT_EQ(sprites.contentRect(), sprites.measuredContentRect());
}

TEST(PetArtTest, TheIconsTakenAtBuildTimeAreTheOnesTheFramesGive) {
  const QTemporaryDir home;
  const PetFiles files{.home = HomeFolder{home.path()},
                       .resources = QStringLiteral(MORVO_PET_RESOURCES)};
  const QString pet = QStringLiteral("morvo");
  const auto computed = MenubarFrames(files).cells(pet);
  ASSERT_EQ(computed.size(), 12U);
  const QDir folder(MenubarFrames::bakedFolder(files, pet));
  EXPECT_EQ(folder.entryList(QDir::Files).size(), 12);
  for (std::size_t index = 0; index < computed.size(); ++index) {
    const QImage baked(folder.filePath(QStringLiteral("%1.png").arg(index)));
    EXPECT_EQ(baked.convertToFormat(QImage::Format_ARGB32_Premultiplied), computed[index]) << index;
  }
}

} // namespace
} // namespace morvo
