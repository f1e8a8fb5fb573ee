#include "usage/TextSearch.h"

#include "base/RandomSource.h"

#include <cstddef>
#include <gtest/gtest.h>
#include <string>

namespace morvo {
namespace {

/// The place, or the length of a text that does not hold what is sought.
std::size_t placeIn(const std::string &text, std::string_view sought) {
  const char *const found = TextSearch::find(text, sought);
  return found == nullptr ? text.size() : static_cast<std::size_t>(found - text.data());
}

TEST(TextSearch, FindsTheFirstPlaceWhereverItIs) {
  for (std::size_t length = 7; length < 400; length += 13) {
    for (std::size_t place = 0; place + 7 <= length; ++place) {
      std::string text(length, 'g');
      text.replace(place, 7, "\"usage\"");
      ASSERT_EQ(placeIn(text, "\"usage\""), place) << length;
    }
  }
}

TEST(TextSearch, ATextThatIsCutOffIsNotThere) {
  for (std::size_t length = 0; length < 300; ++length) {
    std::string text(length, 'x');
    text += "token_coun";
    ASSERT_EQ(placeIn(text, "token_count"), text.size());
  }
}

TEST(TextSearch, ShortTextsAreFoundToo) {
  EXPECT_EQ(placeIn(std::string(200, 'x') + "y", "y"), 200U);
  EXPECT_EQ(placeIn("xyz", ""), 0U);
  EXPECT_EQ(placeIn("", ""), 0U);
  EXPECT_EQ(placeIn("", "xy"), 0U);
  EXPECT_EQ(placeIn(std::string(200, 'x') + "xy", "xy"), 200U);
  EXPECT_EQ(placeIn(std::string(200, '\0') + "a", std::string_view("\0a", 2)), 199U);
}

TEST(TextSearch, FindsWhatAPlainSearchFinds) {
  SeededRandomSource random(1);
  const auto letters = [&random](std::size_t length) {
    std::string text;
    while (text.size() < length) {
      text += static_cast<char>('a' + random.below(2));
    }
    return text;
  };
  for (int round = 0; round < 20'000; ++round) {
    const std::string text = letters(random.below(400));
    const std::string sought = letters(1 + random.below(12));
    ASSERT_EQ(placeIn(text, sought), std::min(text.find(sought), text.size()))
        << text << ' ' << sought;
  }
}

} // namespace
} // namespace morvo
