#include "usage/JsonExcerpt.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace morvo {
namespace {

class JsonExcerptCut : public testing::TestWithParam<qsizetype> {
protected:
  /// The members "a" and "b", the text fed in pieces of the parameter's length.
  static QByteArray excerptOf(const QByteArray &text) {
    JsonExcerpt excerpt({"a", "b"});
    for (qsizetype i = 0; i < text.size(); i += GetParam()) {
      excerpt.feed(QByteArrayView(text).sliced(i).first(std::min(GetParam(), text.size() - i)));
    }
    return excerpt.text();
  }
};

TEST_P(JsonExcerptCut, OnlyTheWantedMembersAreLeft) {
  EXPECT_EQ(excerptOf(R"({"x":1,"a":{"b":[1,{"c":"}"}]},"y":[{"a":2}],"z":"\"a\":3"})"),
            R"({"a":{"b":[1,{"c":"}"}]}})");
  EXPECT_EQ(excerptOf("\t{ \"b\" :\n 7 , \"c\":{} ,\"a\":null } \r\n"),
            "{\"b\":\n 7 ,\"a\":null }");
}

TEST_P(JsonExcerptCut, AnObjectWithoutThemIsEmpty) {
  EXPECT_EQ(excerptOf("{}"), "{}");
  EXPECT_EQ(excerptOf(R"({"c":{"a":1}})"), "{}");
}

TEST_P(JsonExcerptCut, OfOneNameAllAreLeft) {
  EXPECT_EQ(excerptOf(R"({"a":1,"c":2,"a":3})"), R"({"a":1,"a":3})");
}

TEST_P(JsonExcerptCut, ANameThatIsWrittenWithEscapesMayBeWanted) {
  EXPECT_EQ(excerptOf(R"({"\u0061":1,"\"":2,"\\":3})"), R"({"\u0061":1,"\"":2,"\\":3})");
}

TEST_P(JsonExcerptCut, AByteOrderMarkIsPassedOverOnceAndOnlyInFront) {
  EXPECT_EQ(excerptOf("\xEF\xBB\xBF{\"a\":1}"), R"({"a":1})");
  EXPECT_EQ(excerptOf("\xEF\xBB\xBF\xEF\xBB\xBF{\"a\":1}"), QByteArray());
  EXPECT_EQ(excerptOf("{\xEF\xBB\xBF\"a\":1}"), QByteArray());
}

TEST_P(JsonExcerptCut, ANameTooLongToBeWantedIsLeftOutWhateverItHolds) {
  const QByteArray longName = QByteArray(255, 'x') + "\\u0061" + QByteArray(20, 'y');
  EXPECT_EQ(excerptOf("{\"" + longName + R"(":1,"a":2})"), R"({"a":2})");
}

TEST_P(JsonExcerptCut, WhatIsNoWholeObjectHasNone) {
  for (const char *const text :
       {"",           " ",           "{",           "[]",         "7",
        "null",       "{\"a\"",      "{\"a\":",     "{\"a\":1",   R"({"a":"})",
        "{\"a\":1}}", "{\"a\":1}{}", "{\"a\":1} x", "{\"a\":1]",  "{a:1}",
        "{,}",        "{\"a\":1,}",  "{\"a\" 1}",   "x{\"a\":1}", "{\"c\":[1,2}"}) {
    EXPECT_EQ(excerptOf(text), QByteArray()) << text;
  }
}

TEST_P(JsonExcerptCut, AnExcerptBeyondTheLimitIsNoneButWhatIsLeftOutMayBeLong) {
  const QByteArray text((qsizetype{1} << 20U) + 1, 'x');
  EXPECT_EQ(excerptOf("{\"c\":\"" + text + "\",\"a\":1}"), "{\"a\":1}");
  EXPECT_EQ(excerptOf("{\"" + text + "\":2,\"a\":1}"), "{\"a\":1}");
  EXPECT_EQ(excerptOf("{\"a\":\"" + text + "\"}"), QByteArray());
}

INSTANTIATE_TEST_SUITE_P(Pieces, JsonExcerptCut, testing::Values(1, 2, 3, 7, 65536));

} // namespace
} // namespace morvo
