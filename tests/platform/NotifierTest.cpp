#include "platform/Notifier.h"

#include "base/Diagnostics.h"
#include "platform/SettingKeys.h"
#include "support/MemorySettings.h"

#include <gtest/gtest.h>
#include <utility>

namespace morvo {
namespace {

class RecordingService final : public NotificationService {
public:
  [[nodiscard]] bool isAvailable() const override { return m_available; }
  void show(const QString &title, const QString &body, std::function<void()> failed) override {
    m_shown.push_back(title + u'|' + body);
    m_failed = std::move(failed);
  }
  void onActivated(std::function<void()> handler) override { m_handler = std::move(handler); }

  bool m_available = true;
  QStringList m_shown;
  std::function<void()> m_failed;
  std::function<void()> m_handler;
};

class NotifierTest : public testing::Test {
protected:
  test::MemorySettings m_store;
  RecordingService m_service;
  Notifier m_notifier{Setting(m_store, Environment{}), m_service};
  QStringList m_lines;
  Diagnostics::Capture m_capture{[this](const QString &line) { m_lines << line; }};
};

TEST_F(NotifierTest, PostsToTheServiceByDefault) {
  m_notifier.post(QStringLiteral("标题"), QStringLiteral("正文"));
  EXPECT_EQ(m_service.m_shown, QStringList{QStringLiteral("标题|正文")});
  EXPECT_TRUE(m_lines.isEmpty());
}

TEST_F(NotifierTest, DoesNothingWhileNotificationsAreOff) {
  m_store.set(SettingKeys::notifications, false);
  m_notifier.post(QStringLiteral("t"), QStringLiteral("b"));
  m_service.m_available = false;
  m_notifier.post(QStringLiteral("t"), QStringLiteral("b"));
  EXPECT_TRUE(m_service.m_shown.isEmpty());
  EXPECT_TRUE(m_lines.isEmpty());
}

TEST_F(NotifierTest, ATextOfMegabytesIsCut) {
  const QString endless(10 << 20, u'x');
  m_notifier.post(endless, endless);
  ASSERT_EQ(m_service.m_shown.size(), 1);
  EXPECT_EQ(m_service.m_shown.front(), QString(2000, u'x') + QStringLiteral("……|") +
                                           QString(4000, u'x') + QStringLiteral("……"));
  m_service.m_available = false;
  m_notifier.post(endless, endless);
  ASSERT_EQ(m_lines.size(), 1);
  EXPECT_LT(m_lines.front().size(), 7000);
}

TEST_F(NotifierTest, WritesALineWhereThereIsNoService) {
  m_service.m_available = false;
  m_notifier.post(QStringLiteral("标题"), QStringLiteral("正文"));
  EXPECT_EQ(m_lines, QStringList{QStringLiteral("[NOTIFY] 标题 — 正文")});
  EXPECT_TRUE(m_service.m_shown.isEmpty());
}

TEST_F(NotifierTest, WritesTheLineWhenTheServiceDoesNotTakeIt) {
  m_notifier.post(QStringLiteral("t"), QStringLiteral("two\nlines"));
  m_service.m_failed();
  EXPECT_EQ(m_lines, QStringList{QStringLiteral("[NOTIFY] t — two lines")});
}

} // namespace
} // namespace morvo
