#include "app/TrayFrames.h"

#include "pet/PetFolder.h"
#include "support/RunUntil.h"

#include <gmock/gmock.h>

namespace morvo {
namespace {

using test::PetFolder;
using testing::SizeIs;

const QString own = QStringLiteral("custom-1");
const QString builtIn = QStringLiteral("morvo");
const QString idle = QStringLiteral("idle");

class TrayFramesTest : public testing::Test {
protected:
  /// The icons, once there are any to tell of.
  [[nodiscard]] std::vector<QIcon> made(const QString &persona) {
    std::optional<std::vector<QIcon>> icons;
    EXPECT_TRUE(test::runUntil([&] {
      icons = icons ? icons : m_frames.idle(persona);
      return icons.has_value();
    }));
    return icons.value_or(std::vector<QIcon>());
  }

  PetFolder m_folder;
  WorkerPool m_workers;
  TrayFrames m_frames{m_folder.files(), m_workers};
};

TEST_F(TrayFramesTest, framesAreDecodedElsewhereAndNotWaitedFor) {
  PetFolder::fill(m_folder.stateFolder(own, idle), 3);
  EXPECT_FALSE(m_frames.idle(own));
  EXPECT_THAT(made(own), SizeIs(3));
  EXPECT_THAT(m_frames.idle(own), testing::Optional(SizeIs(3)));
}

TEST_F(TrayFramesTest, whatTheBuildHasLeftIsThereAtOnce) {
  PetFolder::fill(m_folder.builtInFolder(builtIn, idle), 3);
  const QString baked = MenubarFrames::bakedFolder(m_folder.files(), builtIn);
  ASSERT_TRUE(QDir().mkpath(baked));
  PetFolder::fill(baked, 2, {13, 13});
  EXPECT_THAT(m_frames.idle(builtIn), testing::Optional(SizeIs(2)));
}

TEST_F(TrayFramesTest, aPetWithoutFramesHasNoneUntilTheyCome) {
  EXPECT_THAT(made(own), SizeIs(0));
  PetFolder::fill(m_folder.stateFolder(own, idle), 2);
  EXPECT_THAT(made(own), SizeIs(2));
}

TEST_F(TrayFramesTest, petsAreMadeBesideEachOther) {
  const QString other = QStringLiteral("custom-2");
  PetFolder::fill(m_folder.stateFolder(own, idle), 2);
  PetFolder::fill(m_folder.stateFolder(other, idle), 4);
  EXPECT_FALSE(m_frames.idle(own));
  EXPECT_FALSE(m_frames.idle(other));
  EXPECT_THAT(made(other), SizeIs(4));
  EXPECT_THAT(made(own), SizeIs(2));
}

TEST_F(TrayFramesTest, goesWhileFramesAreBeingDecoded) {
  PetFolder::fill(m_folder.stateFolder(own, idle), 12, {256, 256});
  {
    TrayFrames brief(m_folder.files(), m_workers);
    EXPECT_FALSE(brief.idle(own));
  }
  // The same worker answers the next one: what was asked for before has come back and found nobody.
  EXPECT_THAT(made(own), SizeIs(12));
}

} // namespace
} // namespace morvo
