#pragma once

#include "monitor/AgentConnector.h"
#include "monitor/HookContext.h"

#include <nlohmann/json.hpp>

namespace morvo {

/// The part of connecting that all agents share: a JSON file whose key `hooks` lists commands by
/// event. Subclasses say what an entry looks like.
class HookFileConnector : public AgentConnector {
public:
  [[nodiscard]] QString id() const override { return m_agent.id; }
  [[nodiscard]] QString name() const override { return m_agent.name; }
  [[nodiscard]] QString file() const override;
  [[nodiscard]] QString command() const override;
  [[nodiscard]] std::expected<void, HookError> connect() override;
  [[nodiscard]] std::expected<void, HookError> disconnect() override;
  [[nodiscard]] bool isConnected() const override;
  [[nodiscard]] QStringList obstacles() const override;

  /// The settings with our entries; adding twice changes nothing.
  [[nodiscard]] virtual nlohmann::json withHooksAdded(nlohmann::json settings) const = 0;
  /// The settings without our entries.
  [[nodiscard]] nlohmann::json withHooksRemoved(nlohmann::json settings) const;

protected:
  struct Agent {
    QString id;
    QString name;
    QString relativeFile;     ///< Below the home folder.
    QString overrideVariable; ///< Names another path when it is set and not empty.
    QStringList events;       ///< All events that get an entry.
    QStringList stopKeys;     ///< The events that tell whether the agent is connected.
  };

  HookFileConnector(HookContext context, Agent agent);

  /// A further step between reading the agent's file and writing it. The settings lock is held.
  [[nodiscard]] virtual std::expected<void, HookError> prepare() { return {}; }
  /// Obstacles beyond the common ones, by the settings in the agent's file; `entered` tells whether
  /// they hold any of our entries.
  [[nodiscard]] virtual QStringList furtherObstacles(const nlohmann::json &settings,
                                                     bool entered) const;

  [[nodiscard]] const HookContext &context() const { return m_context; }
  [[nodiscard]] const QStringList &events() const { return m_agent.events; }
  /// The path in the variable, if there is one, else the file below the home folder.
  [[nodiscard]] QString pathOf(const QString &relativeFile, const QString &overrideVariable) const;

private:
  [[nodiscard]] QStringList missingEvents(const nlohmann::json &settings) const;

  HookContext m_context;
  Agent m_agent;
};

} // namespace morvo
