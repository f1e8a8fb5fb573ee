#include "platform/Setting.h"

#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

class SettingTest : public testing::Test {
protected:
  test::MemorySettings m_store;
  Setting m_setting{m_store, Environment{}};
  QString m_key = QStringLiteral("key");
};

TEST_F(SettingTest, AKeyThatWasNeverWrittenActsAsItsDefault) {
  EXPECT_TRUE(m_setting.boolean(m_key, true));
  EXPECT_FALSE(m_setting.boolean(m_key, false));
  EXPECT_EQ(m_setting.dbl(m_key, 7), 7);
}

} // namespace
} // namespace morvo
