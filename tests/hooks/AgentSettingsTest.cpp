#include "monitor/AgentSettings.h"
#include "base/AtomicFile.h"
#include "hooks/HookHome.h"
#include "monitor/SettingsSeal.h"
#include "monitor/SharedFile.h"
#include "support/FailingFileLayer.h"

#include <QDir>

#include <cerrno>
#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::HookHome;

const QString somePath = QStringLiteral("/a/settings.json");

/// The text after reading and writing it without a change.
QByteArray roundTrip(const QByteArray &text) {
  const auto document = AgentSettings::parse(text, somePath);
  return document ? AgentSettings::text(document->object) : "<refused>";
}

TEST(AgentSettingsTest, WritesPrettyWithSortedKeys) {
  EXPECT_EQ(roundTrip(R"({"b":[1,{}],"a":{"y":true,"x":null}})"),
            "{\n  \"a\": {\n    \"x\": null,\n    \"y\": true\n  },\n  \"b\": [\n    1,\n    {}\n  "
            "]\n}\n");
}

class ValueSurvivesTest : public testing::TestWithParam<QByteArray> {};

TEST_P(ValueSurvivesTest, AsItStood) {
  EXPECT_EQ(roundTrip("{\"v\": " + GetParam() + "}"), "{\n  \"v\": " + GetParam() + "\n}\n");
}

INSTANTIATE_TEST_SUITE_P(Values, ValueSurvivesTest,
                         testing::Values("0", "-0", "-1", "9223372036854775807",
                                         "-9223372036854775808", "18446744073709551615",
                                         "18446744073709551616", "123456789012345678901234567890",
                                         "0.1", "1.10", "-0.0", "1e5", "1E+5", "1e400", "-1e400",
                                         "5e-324", "1e-9999", "3.141592653589793238462643383279",
                                         "\"\"", "\"汉字 🦑\"", "\"\\ud83d\"",
                                         "\"a\\udc00\\ud800b\"", "\"\\ud83d\\ud83d\"", "\"/x/y\"",
                                         "\"\\\\ud83d\"", "\"\\\\\"", "\"\\\"1e400\\\"\"", "true",
                                         "false", "null"));

TEST(AgentSettingsTest, PrivateCharactersInTheFileAreNotTakenForOurs) {
  const QByteArray mark("\xF4\x8F\xBF\xBD");
  const QByteArray carrier("\xEE\x80\x80");
  for (const QByteArray &text : {mark, mark + mark, mark + "#1e5", mark + carrier, "#" + mark,
                                 mark + mark + "#" + carrier}) {
    EXPECT_EQ(roundTrip("{\"v\":\"" + text + "\",\"w\":1e400}"),
              "{\n  \"v\": \"" + text + "\",\n  \"w\": 1e400\n}\n");
  }
  EXPECT_EQ(roundTrip(R"({"v":"\udbff\udffd#1"})"), "{\n  \"v\": \"" + mark + "#1\"\n}\n");
}

TEST(AgentSettingsTest, SurrogatePairsBecomeTheirCharacter) {
  EXPECT_EQ(roundTrip(R"({"v":"\ud83e\udd91"})"), "{\n  \"v\": \"🦑\"\n}\n");
}

TEST(AgentSettingsTest, KeysMayHoldWhatValuesMay) {
  EXPECT_EQ(roundTrip(R"({"\ud83d 1e400": 1})"), "{\n  \"\\ud83d 1e400\": 1\n}\n");
}

TEST(AgentSettingsTest, AByteOrderMarkIsTakenOff) {
  EXPECT_EQ(roundTrip("\xEF\xBB\xBF{\"a\":1}"), "{\n  \"a\": 1\n}\n");
}

class NoObjectTest : public testing::TestWithParam<QByteArray> {};

TEST_P(NoObjectTest, CountsAsAnEmptyObject) {
  const auto document = AgentSettings::parse(GetParam(), somePath);
  ASSERT_TRUE(document.has_value());
  EXPECT_EQ(document->object, nlohmann::json::object());
  EXPECT_EQ(document->replacesForeignContent, !GetParam().trimmed().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Texts, NoObjectTest,
    testing::Values(
        QByteArray(), QByteArray(" \n"), QByteArray("nonsense"), QByteArray("[1]"),
        QByteArray("1e400"), QByteArray("\"t\""), QByteArray("{\"a\":1"), QByteArray("{\"a\":1} x"),
        QByteArray("{1e400:1}"), QByteArray("{\"a\" 1.5}"), QByteArray("{\"a\":01.5}"),
        QByteArray("{\"a\":1.}"), QByteArray("{\"a\":.5}"), QByteArray("{\"a\":1e}"),
        QByteArray("{\"a\":+1.5}"), QByteArray("{\"a\":--1.5}"), QByteArray("{\"a\":\"\\ud8\"}"),
        QByteArray("{\"a\":\"\\"), QByteArray("{\"a\":\"\\u"), QByteArray("{\"a\":\"\\ud83d\\"),
        QByteArray("{\"a\":1,}"), QByteArray("{\"a\":1} / note"), QByteArray("{\"a\":1} /* note"),
        QByteArray("{\"a\":1/**/2}"), QByteArray("// {\"a\":1}"), QByteArray("/**/"),
        QByteArray("/*/{}"), QByteArray("\xFF\xFE"), QByteArray("-"), QByteArray("\"")));

TEST(AgentSettingsTest, CommentsGoAndEveryKeyAndValueStays) {
  const QByteArray text =
      "// \"head\" {[\n{ /* {\"x\": 1e9, */ \"a\" /**/ : 1e400, // \\ud83d \"\r\n"
      "\"b//c\": \"/* no */ \\\" // no\", /* 1.50 \xFF */ \"d\": 1.50 } // end";
  const auto document = AgentSettings::parse(text, somePath);
  ASSERT_TRUE(document.has_value());
  EXPECT_FALSE(document->replacesForeignContent);
  EXPECT_TRUE(document->losesComments);
  EXPECT_EQ(AgentSettings::text(document->object),
            "{\n  \"a\": 1e400,\n  \"b//c\": \"/* no */ \\\" // no\",\n  \"d\": 1.50\n}\n");
}

TEST(AgentSettingsTest, TextsThatLookLikeCommentsAreNone) {
  const auto document = AgentSettings::parse(R"({"a":"// /* \"})", somePath);
  ASSERT_TRUE(document.has_value());
  EXPECT_FALSE(document->losesComments);
}

TEST(AgentSettingsTest, AFileThatChangesMeanwhileIsChangedAnew) {
  HookHome home;
  home.put(QStringLiteral("s.json"), R"({"theirs": 0})");
  test::FailingFileLayer files;
  int interferences = 0;
  files.beforeEach([&](QStringView operation) {
    if (operation == u"fsync" && interferences < 3) {
      home.put(QStringLiteral("s.json"),
               "{\"theirs\": " + QByteArray::number(++interferences) + "}");
    }
  });
  const auto addOurs = [](nlohmann::json settings) {
    settings["ours"] = true;
    return settings;
  };
  ASSERT_TRUE(
      AgentSettings::change(files, home.path(QStringLiteral("s.json")), addOurs).has_value());
  EXPECT_EQ(home.json(QStringLiteral("s.json")), (nlohmann::json{{"theirs", 3}, {"ours", true}}));
}

TEST(AgentSettingsTest, AFileThatNeverStopsChangingIsLeftAlone) {
  HookHome home;
  test::FailingFileLayer files;
  int changes = 0;
  files.beforeEach([&](QStringView operation) {
    if (operation == u"fsync") {
      home.put(QStringLiteral("s.json"), "{\"n\": " + QByteArray::number(++changes) + "}");
    }
  });
  const auto outcome = AgentSettings::change(files, home.path(QStringLiteral("s.json")),
                                             [](nlohmann::json settings) { return settings; });
  ASSERT_FALSE(outcome.has_value());
  EXPECT_EQ(outcome.error().kind, HookError::Kind::fileBusy);
  EXPECT_EQ(changes, SharedFile::attempts);
  EXPECT_EQ(home.json(QStringLiteral("s.json"))["n"], changes);
}

TEST(AgentSettingsTest, BytesThatAreNoUtf8AreRefusedNotReplaced) {
  const auto document = AgentSettings::parse("{\"name\": \"caf\xE9\"}", somePath);
  ASSERT_FALSE(document.has_value());
  EXPECT_EQ(document.error(), (HookError{HookError::Kind::fileNotUtf8, somePath, {}}));
}

TEST(AgentSettingsTest, NestingIsFollowedToItsLimitAndRefusedBeyond) {
  const auto nested = [](int levels) {
    return "{\"a\":" + QByteArray(levels - 1, '[') + QByteArray(levels - 1, ']') + "}";
  };
  EXPECT_TRUE(AgentSettings::parse(nested(AgentSettings::deepestNesting), somePath).has_value());
  const auto deeper = AgentSettings::parse(nested(AgentSettings::deepestNesting + 1), somePath);
  ASSERT_FALSE(deeper.has_value());
  EXPECT_EQ(deeper.error().kind, HookError::Kind::fileTooDeep);
  EXPECT_FALSE(AgentSettings::parse(QByteArray(5'000'000, '['), somePath).has_value());
  EXPECT_TRUE(AgentSettings::parse("{\"a\":\"" + QByteArray(1000, '[') + "\"}", somePath));
}

TEST(AgentSettingsTest, TheLastOfTwoEqualKeysCounts) {
  EXPECT_EQ(roundTrip(R"({"a":1,"a":2})"), "{\n  \"a\": 2\n}\n");
}

TEST(AgentSettingsTest, AMissingFileIsAnEmptyObject) {
  HookHome home;
  SystemFileLayer files;
  const auto document = AgentSettings::read(files, home.path(QStringLiteral("none.json")));
  ASSERT_TRUE(document.has_value());
  EXPECT_TRUE(document->object.empty());
  EXPECT_FALSE(document->replacesForeignContent);
}

TEST(AgentSettingsTest, AFolderInTheFilesPlaceIsAFailure) {
  HookHome home;
  SystemFileLayer files;
  const auto document = AgentSettings::read(files, home.home().path);
  ASSERT_FALSE(document.has_value());
  EXPECT_EQ(document.error().kind, HookError::Kind::fileUnreadable);
  EXPECT_EQ(document.error().cause->code, EISDIR);
}

TEST(AgentSettingsTest, AFileThatMayNotBeReadIsAFailure) {
  HookHome home;
  home.put(QStringLiteral("s.json"), "{}");
  test::FailingFileLayer files;
  files.failAt(1, test::FailingFileLayer::Fault::error, EACCES);
  const auto document = AgentSettings::read(files, home.path(QStringLiteral("s.json")));
  ASSERT_FALSE(document.has_value());
  EXPECT_EQ(document.error().kind, HookError::Kind::fileUnreadable);
  EXPECT_TRUE(document.error().message().contains(QStringLiteral("没有改动它")));
}

TEST(SettingsSealTest, AnyTextComesBackFromItsSeal) {
  for (const QByteArray &text :
       {QByteArray("{\"a\":1e400}"), QByteArray("[\"\\ud83d\"]"), QByteArray("x 1.5 \"\\"),
        QByteArray("\"\xF4\x8F\xBF\xBD\""), QByteArray("\"\xF4\x8F\xBF\xBD\xF4\x8F\xBF\xBD#1\"")}) {
    EXPECT_EQ(SettingsSeal::opened(SettingsSeal::sealed(text)), text) << text.toStdString();
  }
}

} // namespace
} // namespace morvo
