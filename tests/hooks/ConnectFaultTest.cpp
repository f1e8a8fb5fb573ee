#include "hooks/HookHome.h"
#include "monitor/ActConnector.h"
#include "monitor/AgentConnectors.h"
#include "monitor/HookScript.h"
#include "support/FailingFileLayer.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::FailingFileLayer;
using test::HookHome;

struct Fault {
  FailingFileLayer::Fault kind;
  int error;
};

const QStringList files = {
    QStringLiteral(".claude/settings.json"), QStringLiteral(".codex/hooks.json"),
    QStringLiteral(".codex/config.toml"),    QStringLiteral(".gemini/settings.json"),
    QStringLiteral(".cursor/hooks.json"),    QStringLiteral(".morvo/hook.sh"),
    QStringLiteral(".morvo/perm.sh"),
};

/// Fails each file call of an operation in turn; whatever call it is, every file has its old
/// content or the new one.
class ConnectFaultTest : public testing::TestWithParam<Fault> {
protected:
  using Operation = std::function<bool(const HookContext &)>;

  /// The agents' files are links to files that are the user's alone, as with dotfiles.
  void SetUp() override {
    for (const QString &file : agentFiles()) {
      const QString real = QStringLiteral("dotfiles/") + file;
      m_home.put(real, {});
      ASSERT_TRUE(QFile::setPermissions(m_home.path(real), QFile::ReadOwner | QFile::WriteOwner));
      ASSERT_TRUE(QDir().mkpath(QFileInfo(m_home.path(file)).path()));
      ASSERT_TRUE(QFile::link(m_home.path(real), m_home.path(file)));
    }
  }
  [[nodiscard]] static QStringList agentFiles() {
    return files.filter(QRegularExpression(QStringLiteral("[.](json|toml)$")));
  }
  [[nodiscard]] std::size_t agentCount() { return AgentConnectors::all(m_home.context()).size(); }
  void expectPrivateLinks(int call) {
    for (const QString &file : agentFiles()) {
      EXPECT_TRUE(QFileInfo(m_home.path(file)).isSymLink())
          << file.toStdString() << " at call " << call;
      EXPECT_EQ(m_home.mode(QStringLiteral("dotfiles/") + file), 0600U)
          << file.toStdString() << " at call " << call;
    }
  }

  void put(bool connectedBefore) {
    for (const QString &file : files) {
      m_home.put(file, file.endsWith(QStringLiteral(".toml"))   ? "[features]\nhooks = false\n"
                       : file.endsWith(QStringLiteral(".json")) ? "{\"mine\": [1e400, \"字\"]}"
                                                                : "#!/bin/sh\n# old\n");
    }
    if (connectedBefore) {
      for (const auto &agent : AgentConnectors::all(m_home.context())) {
        ASSERT_TRUE(agent->connect().has_value());
      }
      ASSERT_TRUE(ActConnector(m_home.context()).setConnected(true).has_value());
    }
  }
  QList<QByteArray> contents() {
    QList<QByteArray> all;
    for (const QString &file : files) {
      all << m_home.get(file);
    }
    return all;
  }
  void sweep(bool connectedBefore, const Operation &operation) {
    put(connectedBefore);
    const auto before = contents();
    ASSERT_TRUE(operation(m_home.context()));
    const auto after = contents();
    ASSERT_NE(before, after);
    FailingFileLayer failing;
    HookContext context = m_home.context();
    context.files = &failing;
    for (int call = 1;; ++call) {
      put(connectedBefore);
      failing.failAt(call, GetParam().kind, GetParam().error);
      const bool succeeded = operation(context);
      const bool reached = failing.calls() >= call;
      const auto now = contents();
      for (qsizetype i = 0; i < files.size(); ++i) {
        EXPECT_TRUE(now[i] == before[i] || now[i] == after[i])
            << files[i].toStdString() << " at call " << call << ": " << now[i].toStdString();
      }
      expectPrivateLinks(call);
      if (succeeded) {
        EXPECT_EQ(now, after) << "call " << call;
      }
      if (!reached) {
        EXPECT_TRUE(succeeded);
        // Fewer calls than one read and one atomic write would mean that nothing was swept.
        EXPECT_GT(call, 8);
        return;
      }
    }
  }

  HookHome m_home;
};

INSTANTIATE_TEST_SUITE_P(Faults, ConnectFaultTest,
                         testing::Values(Fault{FailingFileLayer::Fault::error, ENOSPC},
                                         Fault{FailingFileLayer::Fault::error, EACCES},
                                         Fault{FailingFileLayer::Fault::error, EIO},
                                         Fault{FailingFileLayer::Fault::tornWrite, ENOSPC},
                                         Fault{FailingFileLayer::Fault::crash, EIO}));

TEST_P(ConnectFaultTest, ConnectingEachAgentLeavesOldOrNewFiles) {
  for (std::size_t i = 0; i < agentCount(); ++i) {
    sweep(false, [i](const HookContext &context) {
      return AgentConnectors::all(context)[i]->connect().has_value();
    });
  }
}

TEST_P(ConnectFaultTest, DisconnectingEachAgentLeavesOldOrNewFiles) {
  for (std::size_t i = 0; i < agentCount(); ++i) {
    sweep(true, [i](const HookContext &context) {
      return AgentConnectors::all(context)[i]->disconnect().has_value();
    });
  }
}

TEST_P(ConnectFaultTest, TurningApprovalsOnAndOffLeavesOldOrNewFiles) {
  sweep(false, [](const HookContext &context) {
    return ActConnector(context).setConnected(true).has_value();
  });
  sweep(true, [](const HookContext &context) {
    return ActConnector(context).setConnected(false).has_value();
  });
}

} // namespace
} // namespace morvo
