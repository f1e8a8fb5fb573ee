#include "FrameWriter.h"
#include "PetArt.h"
#include "Sheet.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace morvo {
namespace {

QByteArray bytesOf(const QString &path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(DrawingTest, TheSamePictureTwiceIsTheSameToTheBit) {
  const PetArt &pet = thePet();
  for (const FrameSet &set : pet.frameSets()) {
    const int frame = set.frames / 2;
    EXPECT_EQ(pet.picture(set, frame), pet.picture(set, frame)) << set.name.toLatin1().constData();
  }
}

TEST(DrawingTest, AnotherProcessHasWrittenTheSameBytes) {
  const PetArt &pet = thePet();
  const QTemporaryDir folder;
  for (const FrameSet &set : pet.frameSets()) {
    const int frame = set.frames / 3;
    const QString path = folder.filePath(set.name.toString() + QStringLiteral(".png"));
    ASSERT_TRUE(FrameWriter::write(pet.picture(set, frame), path));
    const QByteArray built = bytesOf(QStringLiteral("%1/%2/%3.png")
                                         .arg(QStringLiteral(MORVO_PET_FOLDER), set.name.toString())
                                         .arg(frame));
    EXPECT_FALSE(built.isEmpty());
    EXPECT_TRUE(bytesOf(path) == built) << set.name.toLatin1().constData();
  }
}

TEST(DrawingTest, TheBuildHasDrawnEverySetOfTheProgramInFull) {
  for (const FrameSet &set : thePet().frameSets()) {
    const QDir folder(QStringLiteral(MORVO_PET_FOLDER "/") + set.name.toString());
    EXPECT_EQ(folder.entryList(QDir::Files).size(), set.frames) << set.name.toLatin1().constData();
  }
}

TEST(DrawingTest, TheFirstSetIsIdleAndALoop) {
  const FrameSet &first = thePet().frameSets().front();
  EXPECT_EQ(first.name, u"idle");
  EXPECT_TRUE(first.loop);
}

TEST(DrawingTest, AFileThatCannotBeWrittenIsAnError) {
  const PetArt &pet = thePet();
  const auto written = FrameWriter::write(pet.picture(pet.frameSets().front(), 0),
                                          QStringLiteral("/nowhere/at/all.png"));
  ASSERT_FALSE(written);
  EXPECT_FALSE(written.error().isEmpty());
}

TEST(DrawingTest, AStripShowsEveryFrame) {
  const PetArt &pet = thePet();
  const FrameSet &set = pet.frameSets().back();
  const QImage strip = Sheet::strip(pet, set);
  constexpr int columns = 12;
  constexpr int cell = 128;
  EXPECT_EQ(strip.size(), QSize(columns * cell, (set.frames + columns - 1) / columns * cell));
}

} // namespace
} // namespace morvo
