#include "usage/JsonArrayText.h"

#include <QByteArrayList>

#include <gtest/gtest.h>

namespace morvo {
namespace {

/// The objects of the text, fed in pieces of that size; nothing when it is no array of objects.
std::optional<QByteArrayList> objectsOf(const QByteArray &text, qsizetype piece) {
  QByteArrayList objects;
  JsonArrayText array([&objects](const QByteArray &object) {
    objects.append(object);
    return object != "{refused}";
  });
  for (qsizetype i = 0; i < text.size(); i += piece) {
    const QByteArray bytes = text.mid(i, piece);
    if (!array.feed({bytes.constData(), static_cast<std::size_t>(bytes.size())})) {
      return std::nullopt;
    }
  }
  return array.isComplete() ? std::optional(objects) : std::nullopt;
}

class JsonArrayTextCut : public testing::TestWithParam<int> {};

TEST_P(JsonArrayTextCut, FindsTheObjectsWhereverTheTextIsCut) {
  const QByteArray first = R"({"a":"}\"]{","b":[{},[1]]})";
  EXPECT_EQ(objectsOf(" [" + first + " ,\n{}]\n ", GetParam()), (QByteArrayList{first, "{}"}));
  EXPECT_EQ(objectsOf("[]", GetParam()), QByteArrayList());
}

TEST_P(JsonArrayTextCut, RefusesWhatIsNoArrayOfObjects) {
  for (const char *text : {"", "{}", "[{}", "[{},]", "[1]", "[{} {}]", "[{}] x", "[{}]]", "[,{}]",
                           "[{refused}]", "\"[]\"", "[[{}]]", "[{\"a\":\"}]"}) {
    EXPECT_FALSE(objectsOf(text, GetParam())) << text;
  }
}

INSTANTIATE_TEST_SUITE_P(Pieces, JsonArrayTextCut, testing::Values(1, 2, 3, 7, 1000));

TEST(JsonArrayText, PassesOverAnObjectThatIsTooLong) {
  QByteArrayList objects;
  JsonArrayText array(
      [&objects](const QByteArray &object) {
        objects.append(object);
        return true;
      },
      9);
  for (const char byte : std::string_view(R"([{},{"a":123},{"a":1234},{"b":1}])")) {
    ASSERT_TRUE(array.feed({&byte, 1}));
  }
  EXPECT_TRUE(array.isComplete());
  EXPECT_EQ(objects, (QByteArrayList{"{}", R"({"a":123})", R"({"b":1})"}));
}

} // namespace
} // namespace morvo
