#include "usage/GenericUsageReader.h"
#include "base/Json.h"
#include "support/ManualClock.h"
#include "support/Unprivileged.h"
#include "usage/LogTree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::billables;
using testing::ElementsAre;
using testing::IsEmpty;

using Tokens = GenericUsageReader::Tokens;

constexpr double week = 168;

struct RecordCase {
  const char *record;
  Tokens tokens;
};

class GenericRecord : public testing::TestWithParam<RecordCase> {};

TEST_P(GenericRecord, GivesItsTokens) {
  const auto record = Json::parseObject(GetParam().record);
  ASSERT_TRUE(record);
  EXPECT_EQ(GenericUsageReader::extractTokens(*record), GetParam().tokens) << GetParam().record;
}

constexpr auto most = std::numeric_limits<std::int64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Rules, GenericRecord,
    testing::Values(
        RecordCase{R"({"usage":{"input_tokens":1,"prompt_tokens":2,"inputTokens":4,)"
                   R"("output_tokens":8,"completion_tokens":16,"outputTokens":32,)"
                   R"("cache_creation_input_tokens":64,"cache_creation_tokens":128,)"
                   R"("cache_read_input_tokens":256,"cached_input_tokens":512}})",
                   {255, 768}},
        RecordCase{R"({"message":{"usage":{"input_tokens":3}}})", {3}},
        RecordCase{R"({"usage":{"input_tokens":1},"message":{"usage":{"input_tokens":3}}})", {1}},
        RecordCase{R"({"usage":7,"message":{"usage":{"input_tokens":3}}})", {3}},
        RecordCase{R"({"payload":{"usage":{"input_tokens":4}}})", {4}},
        // The first place counts even if there is nothing in it.
        RecordCase{R"({"usage":{},"input_tokens":9})", {0, 0, true}},
        RecordCase{R"({"usage":{"cached_input_tokens":5}})", {0, 0, true}},
        RecordCase{R"({"usage":{"total_tokens":6,"cached_input_tokens":5}})", {6, 5}},
        RecordCase{R"({"usage":{"total_tokens":-6}})", {0, 0, true}},
        RecordCase{R"({"payload":{"info":{"total_token_usage":)"
                   R"({"total_tokens":100,"cached_input_tokens":30}}}})",
                   {70, 30}},
        RecordCase{R"({"payload":{"info":{"total_token_usage":)"
                   R"({"total_tokens":100,"cached_input_tokens":130}}}})",
                   {0, 130}},
        RecordCase{R"({"payload":{"info":{"total_token_usage":{"total_tokens":0}}},)"
                   R"("outputTokens":2})",
                   {2}},
        RecordCase{R"({"prompt_tokens":2,"completion_tokens":3,"cached_input_tokens":5})", {5}},
        RecordCase{R"({"total_tokens":2,"totalTokens":3})", {5}},
        RecordCase{R"({"total_tokens":-2})", {0, 0, true}}, RecordCase{"{}", {0, 0, true}},
        // Kinds of numbers.
        RecordCase{R"({"input_tokens":"1200"})", {1200}},
        RecordCase{R"({"input_tokens":"+1200"})", {1200}},
        RecordCase{R"({"input_tokens":"12a"})", {0, 0, true}},
        RecordCase{R"({"input_tokens":"99999999999999999999","output_tokens":1})", {1}},
        RecordCase{R"({"input_tokens":12.9})", {12}},
        RecordCase{R"({"input_tokens":0.9})", {0, 0, true}},
        RecordCase{R"({"input_tokens":true})", {0, 0, true}},
        RecordCase{R"({"input_tokens":1e30,"output_tokens":1e30})", {most}},
        RecordCase{R"({"input_tokens":9223372036854775807,"output_tokens":5})", {most}}));

class GenericUsageReaderTest : public testing::Test {
protected:
  void write(const QString &path, const QByteArray &content, Duration age = std::chrono::hours(1)) {
    m_tree.write(path, content);
    m_tree.setModified(path,
                       m_clock.now() - std::chrono::duration_cast<std::chrono::milliseconds>(age));
  }
  [[nodiscard]] std::vector<std::int64_t> read() {
    return billables(m_reader.events(QStringLiteral(".tool"), week, QStringLiteral("gemini")));
  }

  test::LogTree m_tree;
  test::ManualClock m_clock;
  GenericUsageReader m_reader{m_tree.home(), m_clock};
};

TEST_F(GenericUsageReaderTest, AFolderThatIsNotThereGivesNothing) {
  EXPECT_THAT(read(), IsEmpty());
  m_tree.write(QStringLiteral(".tool"), "{}");
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(GenericUsageReaderTest, AFileIsOneEventWithTheTimeOfItsLastChange) {
  write(QStringLiteral(".tool/a/log.jsonl"),
        "{\"input_tokens\":100}\n\nnonsense tokens\n{\"usage\":{\"output_tokens\":11,"
        "\"cached_input_tokens\":4}}");
  const auto events = m_reader.events(QStringLiteral(".tool"), week, QStringLiteral("gemini-2.5"));
  ASSERT_EQ(events.size(), 1);
  EXPECT_EQ(events[0].ts, m_clock.now() - std::chrono::hours(1));
  EXPECT_EQ(events[0].billable, 111);
  EXPECT_EQ(events[0].cacheRead, 4);
  EXPECT_DOUBLE_EQ(events[0].cost, (55 * 1.25 + 55 * 5) / 1e6);
  EXPECT_FALSE(events[0].burnable);
}

TEST_F(GenericUsageReaderTest, AFileWithoutTokensIsNoEvent) {
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":0}\n{\"x\":1}\n");
  write(QStringLiteral(".tool/empty.jsonl"), "");
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(GenericUsageReaderTest, AnArrayOfRecordsIsReadAsOne) {
  write(QStringLiteral(".tool/log.json"),
        "[\n  {\n \"input_tokens\": 5\n },\n {\"output_tokens\": 6}\n]\n");
  EXPECT_THAT(read(), ElementsAre(11));
}

TEST_F(GenericUsageReaderTest, AFileThatIsNoArrayOfRecordsIsReadByLines) {
  write(QStringLiteral(".tool/log.json"), "{\"input_tokens\": 5}\n[{\"input_tokens\": 7}]\n");
  EXPECT_THAT(read(), ElementsAre(5));
}

TEST_F(GenericUsageReaderTest, AnArrayIsOnlyReadWholeFromAJsonFile) {
  write(QStringLiteral(".tool/log.jsonl"), "[\n{\"input_tokens\": 5}\n]\n");
  EXPECT_THAT(read(), ElementsAre(5));
  write(QStringLiteral(".tool/log.jsonl"), "[{\"input_tokens\": 5}]\n");
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(GenericUsageReaderTest, AFileThatIsNoTextCountsNothing) {
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":5}\n\xff\xfe\n");
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(GenericUsageReaderTest, OnlyTheNewest40FilesAreRead) {
  for (int i = 1; i <= 41; ++i) {
    write(QStringLiteral(".tool/%1.jsonl").arg(i),
          "{\"input_tokens\":" + QByteArray::number(i) + "}", std::chrono::minutes(i));
  }
  const auto counts = read();
  ASSERT_EQ(counts.size(), 40);
  EXPECT_EQ(counts.front(), 1);
  EXPECT_EQ(counts.back(), 40);
}

TEST_F(GenericUsageReaderTest, OldFilesAreNotRead) {
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":5}", std::chrono::hours(169));
  EXPECT_THAT(read(), IsEmpty());
}

TEST_F(GenericUsageReaderTest, ChangedFilesAreReadAgain) {
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":5}\n");
  EXPECT_THAT(read(), ElementsAre(5));
  EXPECT_THAT(read(), ElementsAre(5));
  m_tree.rewrite(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":6}\n",
                 m_clock.now() - std::chrono::hours(1));
  EXPECT_THAT(read(), ElementsAre(6));
}

TEST_F(GenericUsageReaderTest, AFileThatCannotBeOpenedForAMomentIsTriedAgain) {
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":5}\n");
  ASSERT_EQ(::chmod(QFile::encodeName(m_tree.path(QString())).constData(), 0755), 0);
  ASSERT_EQ(
      ::chmod(QFile::encodeName(m_tree.path(QStringLiteral(".tool/log.jsonl"))).constData(), 0600),
      0);
  if (::geteuid() == 0) {
    const test::Unprivileged user;
    ASSERT_TRUE(user.works());
    EXPECT_THAT(read(), IsEmpty());
  }
  EXPECT_THAT(read(), ElementsAre(5));
}

TEST_F(GenericUsageReaderTest, ARecordOf64MegabytesCounts) {
  const QByteArray blank((qsizetype{64} << 20U) - 18, ' ');
  write(QStringLiteral(".tool/log.jsonl"), "{\"input_tokens\":5" + blank + "}\n");
  write(QStringLiteral(".tool/log.json"), "[\n{\"input_tokens\":6" + blank + "}]\n",
        std::chrono::hours(2));
  EXPECT_THAT(read(), ElementsAre(5, 6));
}

TEST_F(GenericUsageReaderTest, CountsOfManyRecordsEndAtTheLimits) {
  write(QStringLiteral(".tool/log.jsonl"),
        QByteArray("{\"input_tokens\":9223372036854775807}\n").repeated(3));
  EXPECT_THAT(read(), ElementsAre(most));
}

} // namespace
} // namespace morvo
