#include "companion/LinePackStore.h"

#include "base/AtomicFile.h"
#include "base/Json.h"
#include "base/SystemFileLayer.h"

#include <QJsonArray>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

QJsonObject completeJson() {
  QJsonObject json;
  for (const char16_t *key :
       {u"done", u"needsInput", u"petted", u"digest", u"usage", u"reflect", u"rest"}) {
    json.insert(QString::fromUtf16(key),
                QJsonArray{QString::fromUtf16(key) + u'1', QString::fromUtf16(key) + u'2'});
  }
  return json;
}

TEST(LinePackTest, EveryBucketIsDecodedAndEncoded) {
  const auto pack = linePackFromJson(completeJson());
  ASSERT_TRUE(pack.has_value());
  EXPECT_EQ(toJson(*pack), completeJson());
  EXPECT_EQ(pack->lines(LineBucket::needsInput).front(), QStringLiteral("needsInput1"));
  EXPECT_EQ(pack->lines(LineBucket::rest).back(), QStringLiteral("rest2"));
}

class LinePackMissingBucketTest : public testing::TestWithParam<const char16_t *> {};

TEST_P(LinePackMissingBucketTest, AMissingBucketFailsTheWholePack) {
  QJsonObject json = completeJson();
  json.remove(QString::fromUtf16(GetParam()));
  EXPECT_FALSE(linePackFromJson(json).has_value());
}

TEST_P(LinePackMissingBucketTest, ABucketThatIsNoListOfTextsFailsTheWholePack) {
  QJsonObject json = completeJson();
  json.insert(QString::fromUtf16(GetParam()), QJsonArray{1});
  EXPECT_FALSE(linePackFromJson(json).has_value());
  json.insert(QString::fromUtf16(GetParam()), QStringLiteral("text"));
  EXPECT_FALSE(linePackFromJson(json).has_value());
}

INSTANTIATE_TEST_SUITE_P(AllBuckets, LinePackMissingBucketTest,
                         testing::Values(u"done", u"needsInput", u"petted", u"digest", u"usage",
                                         u"reflect", u"rest"));

TEST(LinePackTest, APackWithDoneEmptyAndPettedFilledIsUsable) {
  LinePack pack;
  pack.petted = {QStringLiteral("嘿")};
  EXPECT_TRUE(pack.isUsable());
}

TEST(LinePackTest, APackWithOnlyRestFilledIsNotUsable) {
  LinePack pack;
  pack.rest = {QStringLiteral("歇会儿")};
  EXPECT_FALSE(pack.isUsable());
}

class LinePackStoreTest : public testing::Test {
protected:
  void put(const QString &path, const QByteArray &content) {
    ASSERT_TRUE(AtomicFile::write(m_layer, path, content).has_value());
  }
  [[nodiscard]] QString userFile() const {
    return m_files.userDirectory(m_id) + QStringLiteral("/lines.json");
  }
  [[nodiscard]] QString resourceFile() const {
    return m_files.resourceDirectory(m_id) + QStringLiteral("/lines.json");
  }

  QTemporaryDir m_folder;
  SystemFileLayer m_layer;
  PetFiles m_files{.home = {m_folder.filePath(QStringLiteral("home"))},
                   .resources = m_folder.filePath(QStringLiteral("resources"))};
  QString m_id = QStringLiteral("morvo");
};

TEST_F(LinePackStoreTest, TheUsersFileComesFirst) {
  QJsonObject own = completeJson();
  own.insert(QStringLiteral("done"), QJsonArray{QStringLiteral("own")});
  put(userFile(), Json::pretty(own));
  put(resourceFile(), Json::pretty(completeJson()));
  EXPECT_EQ(LinePackStore::load(m_files, m_id)->done, QStringList{QStringLiteral("own")});
}

TEST_F(LinePackStoreTest, TheResourceIsUsedWhenTheDiskFileIsAbsentOrBrokenAndIsNeverWrittenToDisk) {
  put(resourceFile(), Json::pretty(completeJson()));
  EXPECT_TRUE(LinePackStore::load(m_files, m_id).has_value());
  EXPECT_FALSE(m_layer.read(userFile()).has_value());
  put(userFile(), "{ broken");
  EXPECT_TRUE(LinePackStore::load(m_files, m_id).has_value());
  EXPECT_EQ(*m_layer.read(userFile()), "{ broken");
}

TEST_F(LinePackStoreTest, NoFileNoPack) {
  EXPECT_FALSE(LinePackStore::load(m_files, m_id).has_value());
}

TEST_F(LinePackStoreTest, AnIdThatLeadsElsewhereHasNoPack) {
  put(m_files.home.file(QStringLiteral(".morvo/lines.json")), Json::pretty(completeJson()));
  EXPECT_FALSE(LinePackStore::load(m_files, QStringLiteral("..")).has_value());
}

} // namespace
} // namespace morvo
