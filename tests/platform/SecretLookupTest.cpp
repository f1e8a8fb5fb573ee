#include "platform/SecretLookup.h"

#include "base/AtomicFile.h"
#include "base/SystemFileLayer.h"
#include "platform/DeveloperKeyFile.h"
#include "support/MemorySecrets.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace morvo {
namespace {

class SecretLookupTest : public testing::Test {
protected:
  void putKeyFile(const QString &name, const QByteArray &content) {
    ASSERT_TRUE(AtomicFile::write(m_files, m_home.file(QStringLiteral(".morvo/") + name), content));
  }
  [[nodiscard]] std::optional<QString> find(const SecretLookup::Places &places) {
    return SecretLookup(m_secrets, m_environment, m_home, m_files).find(places);
  }
  void saveKey(const QString &value) {
    m_secrets.save(value, QStringLiteral("ai.zentaro.morvobar.dashscope"),
                   QStringLiteral("api-key"));
  }

  QTemporaryDir m_folder;
  HomeFolder m_home{m_folder.path()};
  SystemFileLayer m_files;
  test::MemorySecrets m_secrets;
  Environment m_environment;
};

TEST_F(SecretLookupTest, NothingAnywhereIsNoKey) {
  EXPECT_EQ(find(SecretLookup::dashScope()), std::nullopt);
}

TEST_F(SecretLookupTest, TheStoreWinsOverTheEnvironmentAndTheEnvironmentOverTheFile) {
  putKeyFile(QStringLiteral("dashscope.env"), "DASHSCOPE_API_KEY=of-file\n");
  EXPECT_EQ(find(SecretLookup::dashScope()), QStringLiteral("of-file"));
  m_environment =
      m_environment.with(QStringLiteral("DASHSCOPE_API_KEY"), QStringLiteral("of-environment"));
  EXPECT_EQ(find(SecretLookup::dashScope()), QStringLiteral("of-environment"));
  saveKey(QStringLiteral("of-store"));
  EXPECT_EQ(find(SecretLookup::dashScope()), QStringLiteral("of-store"));
}

TEST_F(SecretLookupTest, AnEmptyVariableIsPassedOver) {
  putKeyFile(QStringLiteral("dashscope.env"), "DASHSCOPE_API_KEY=of-file");
  m_environment = m_environment.with(QStringLiteral("DASHSCOPE_API_KEY"), QString());
  EXPECT_EQ(find(SecretLookup::dashScope()), QStringLiteral("of-file"));
}

TEST_F(SecretLookupTest, DoubaoTriesItsTwoNamesInOrderInEnvironmentAndFile) {
  putKeyFile(QStringLiteral("volcengine.env"), "VOLC_API_KEY=second\nDOUBAO_TTS_API_KEY=first\n");
  EXPECT_EQ(find(SecretLookup::doubaoSpeech()), QStringLiteral("first"));
  m_environment = m_environment.with(QStringLiteral("VOLC_API_KEY"), QStringLiteral("volc"));
  EXPECT_EQ(find(SecretLookup::doubaoSpeech()), QStringLiteral("volc"));
  m_environment =
      m_environment.with(QStringLiteral("DOUBAO_TTS_API_KEY"), QStringLiteral("doubao"));
  EXPECT_EQ(find(SecretLookup::doubaoSpeech()), QStringLiteral("doubao"));
}

TEST_F(SecretLookupTest, DoubaoHasItsOwnItemInTheStore) {
  m_secrets.save(QStringLiteral("kept"), QStringLiteral("ai.zentaro.morvobar.doubao-voice"),
                 QStringLiteral("api-key"));
  EXPECT_EQ(find(SecretLookup::doubaoSpeech()), QStringLiteral("kept"));
  EXPECT_EQ(find(SecretLookup::dashScope()), std::nullopt);
}

TEST_F(SecretLookupTest, AKeyFileThatIsAFolderIsNoKey) {
  putKeyFile(QStringLiteral("dashscope.env/inside"), "DASHSCOPE_API_KEY=x");
  EXPECT_EQ(find(SecretLookup::dashScope()), std::nullopt);
}

struct KeyLine {
  const char *name;
  QByteArray content;
  std::optional<QString> value;
};

class DeveloperKeyFileTest : public testing::TestWithParam<KeyLine> {};

TEST_P(DeveloperKeyFileTest, GivesTheValue) {
  EXPECT_EQ(DeveloperKeyFile::value(GetParam().content, QStringLiteral("DASHSCOPE_API_KEY")),
            GetParam().value);
}

INSTANTIATE_TEST_SUITE_P(
    Files, DeveloperKeyFileTest,
    testing::Values(
        KeyLine{"Empty", "", std::nullopt},
        KeyLine{"NothingBehindTheMark", "DASHSCOPE_API_KEY=", std::nullopt},
        KeyLine{"OnlyOrnamentBehindTheMark", "DASHSCOPE_API_KEY= \"' \r\n", std::nullopt},
        KeyLine{"AnEmptyFirstLineHidesALaterOne", "DASHSCOPE_API_KEY=\nDASHSCOPE_API_KEY=b\n",
                std::nullopt},
        KeyLine{"Plain", "DASHSCOPE_API_KEY=sk-1", QStringLiteral("sk-1")},
        KeyLine{"TheFirstLineWins", "x=1\n\nDASHSCOPE_API_KEY=a\nDASHSCOPE_API_KEY=b\n",
                QStringLiteral("a")},
        KeyLine{"TheMarkMayStandAnywhere", "  export MY_DASHSCOPE_API_KEY=sk-2\n",
                QStringLiteral("sk-2")},
        KeyLine{"EvenInAComment", "# DASHSCOPE_API_KEY=old\n", QStringLiteral("old")},
        KeyLine{"DoubleQuotes", "DASHSCOPE_API_KEY=\"sk 3\"\r\n", QStringLiteral("sk 3")},
        KeyLine{"SingleQuotes", "DASHSCOPE_API_KEY='sk-4' \n", QStringLiteral("sk-4")},
        KeyLine{"QuotesInsideStay", "DASHSCOPE_API_KEY=a'b\"c", QStringLiteral("a'b\"c")},
        KeyLine{"AFurtherMarkIsPartOfTheValue", "DASHSCOPE_API_KEY=DASHSCOPE_API_KEY=x",
                QStringLiteral("DASHSCOPE_API_KEY=x")},
        KeyLine{"BlankBeforeTheSign", "DASHSCOPE_API_KEY =x", std::nullopt},
        KeyLine{"NoUtf8", "DASHSCOPE_API_KEY=\xff\xfe", std::nullopt}),
    [](const auto &info) { return std::string(info.param.name); });

} // namespace
} // namespace morvo
