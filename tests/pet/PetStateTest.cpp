#include "pet/PetState.h"

#include "base/Json.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

TEST(PetStateTest, theNeedsOfALaunchAreTheirInitialValues) {
  EXPECT_EQ(toJson(Needs()),
            *Json::parseObject(R"({"belly":80,"energy":80,"affinity":80,"bond":0})"));
}

TEST(PetStateTest, comesBackFromItsJsonAsItWas) {
  const PetState state{.mood = QStringLiteral("sleepy"),
                       .needs = {.belly = 12.5, .energy = 25, .affinity = 100, .bond = 0.25}};
  EXPECT_EQ(petStateFromJson(toJson(state)), state);
}

TEST(PetStateTest, readsAnAnswerWithFieldsThatItDoesNotKnow) {
  const auto state = petStateFromJson(*Json::parseObject(
      R"({"mood":"hype","needs":{"belly":1,"energy":2,"affinity":3.5,"bond":-4,"x":[]},"y":{}})"));
  ASSERT_TRUE(state);
  EXPECT_EQ(state->mood, QStringLiteral("hype"));
  EXPECT_EQ(state->needs, (Needs{.belly = 1, .energy = 2, .affinity = 3.5, .bond = -4}));
}

class DamagedNeedsTest : public testing::TestWithParam<const char *> {};

TEST_P(DamagedNeedsTest, areNoNeeds) {
  const QJsonObject needs = *Json::parseObject(GetParam());
  EXPECT_FALSE(needsFromJson(needs));
  EXPECT_FALSE(petStateFromJson(
      {{QStringLiteral("mood"), QStringLiteral("calm")}, {QStringLiteral("needs"), needs}}));
}

INSTANTIATE_TEST_SUITE_P(All, DamagedNeedsTest,
                         testing::Values(R"({})", R"({"energy":1,"affinity":1,"bond":1})",
                                         R"({"belly":1,"affinity":1,"bond":1})",
                                         R"({"belly":1,"energy":1,"bond":1})",
                                         R"({"belly":1,"energy":1,"affinity":1})",
                                         R"({"belly":"1","energy":1,"affinity":1,"bond":1})",
                                         R"({"belly":1,"energy":null,"affinity":1,"bond":1})",
                                         R"({"belly":1,"energy":1,"affinity":true,"bond":1})",
                                         R"({"belly":1,"energy":1,"affinity":1,"bond":[1]})"));

class DamagedStateTest : public testing::TestWithParam<const char *> {};

TEST_P(DamagedStateTest, isNoState) {
  EXPECT_FALSE(petStateFromJson(*Json::parseObject(GetParam())));
}

INSTANTIATE_TEST_SUITE_P(
    All, DamagedStateTest,
    testing::Values(R"({})", R"({"mood":"calm"})", R"({"mood":"calm","needs":[]})",
                    R"({"needs":{"belly":1,"energy":1,"affinity":1,"bond":1}})",
                    R"({"mood":5,"needs":{"belly":1,"energy":1,"affinity":1,"bond":1}})"));

} // namespace
} // namespace morvo
