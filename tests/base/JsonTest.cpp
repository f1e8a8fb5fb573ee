#include "base/Json.h"

#include <QJsonArray>

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(JsonTest, ReadsAnObject) {
  const auto object = Json::parseObject(" {\"文\":[1,2.5,null,true],\"b\":{}}\r\n");
  ASSERT_TRUE(object.has_value());
  EXPECT_EQ(*object, (QJsonObject{{QStringLiteral("文"), QJsonArray{1, 2.5, QJsonValue(), true}},
                                  {QStringLiteral("b"), QJsonObject{}}}));
}

class JsonNoObject : public testing::TestWithParam<QByteArray> {};

TEST_P(JsonNoObject, GivesNothing) { EXPECT_EQ(Json::parseObject(GetParam()), std::nullopt); }

INSTANTIATE_TEST_SUITE_P(
    All, JsonNoObject,
    testing::Values(QByteArray(), QByteArray("   "), QByteArray("[]"), QByteArray("1"),
                    QByteArray("\"a\""), QByteArray("null"), QByteArray("{"), QByteArray("{]"),
                    QByteArray("{}x"), QByteArray("{}{}"), QByteArray("{\"a\"}"),
                    QByteArray("{\"a\":1,}"), QByteArray("{'a':1}"), QByteArray("{\"a\":NaN}"),
                    QByteArray("{\"a\":01}"), QByteArray("{\"a\":+1}"),
                    QByteArray("{\"a\":\"\\u12\"}"), QByteArray("{\"a\":\"\xff\"}"),
                    QByteArray("{\"a\":\"\xed\xa0\xbd\"}"), QByteArray("{\"a\":\"\xc0\xaf\"}"),
                    QByteArray("{\"a\":\"\xf4\x90\x80\x80\"}"), QByteArray(1000, '\0'),
                    QByteArray("\0{}", 3)));

TEST(JsonTest, ALoneSurrogateEscapeIsKept) {
  const auto object = Json::parseObject("{\"a\":\"x\\ud83d\",\"b\":\"\\udc00y\"}");
  ASSERT_TRUE(object.has_value());
  EXPECT_EQ(object->value(QStringLiteral("a")).toString(), QStringLiteral("x") + QChar(0xd83d));
  EXPECT_EQ(object->value(QStringLiteral("b")).toString(), QChar(0xdc00) + QStringLiteral("y"));
}

TEST(JsonTest, WhatOthersWriteALittleWrongIsStillRead) {
  for (const char *text :
       {"\xef\xbb\xbf{\"a\":1}", "{\"a\":\"\\x\"}", "{\"a\":\"\t\"}", "{\"a\":1.}", "{\"a\":.5}"}) {
    EXPECT_TRUE(Json::parseObject(text).has_value()) << text;
  }
}

TEST(JsonTest, AnEscapedNulIsPartOfTheText) {
  const auto object = Json::parseObject("{\"a\":\"x\\u0000y\"}");
  ASSERT_TRUE(object.has_value());
  EXPECT_EQ(object->value(QStringLiteral("a")).toString().size(), 3);
}

TEST(JsonTest, OfKeysThatRepeatTheLastCounts) {
  EXPECT_EQ(Json::parseObject("{\"a\":1,\"a\":2}"), (QJsonObject{{QStringLiteral("a"), 2}}));
}

QByteArray nested(int levels) {
  return "{\"a\":" + QByteArray(levels - 1, '[') + QByteArray(levels - 1, ']') + '}';
}

TEST(JsonTest, NestingIsReadUpToItsLimitAndRefusedBeyond) {
  EXPECT_TRUE(Json::parseObject(nested(1000)).has_value());
  EXPECT_FALSE(Json::parseObject(nested(1100)).has_value());
  EXPECT_FALSE(Json::parseObject(QByteArray(5000000, '[')).has_value());
  EXPECT_FALSE(Json::parseObject(QByteArray("{\"a\":").repeated(1000000)).has_value());
}

TEST(JsonTest, WholeNumbersKeepAllTheirDigits) {
  const auto object = Json::parseObject("{\"a\":9007199254740993}");
  EXPECT_EQ(object->value(QStringLiteral("a")).toInteger(), 9007199254740993);
}

TEST(JsonTest, PrettyTextIsSortedIndentedAndEndsWithALineFeed) {
  EXPECT_EQ(Json::pretty({{QStringLiteral("b"), 1}, {QStringLiteral("a"), QStringLiteral("文")}}),
            "{\n    \"a\": \"文\",\n    \"b\": 1\n}\n");
}

} // namespace
} // namespace morvo
