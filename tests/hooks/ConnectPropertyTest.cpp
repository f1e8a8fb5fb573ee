#include "base/RandomSource.h"
#include "hooks/HookHome.h"
#include "monitor/AgentConnectors.h"

#include <gtest/gtest.h>

namespace morvo {
namespace {

using test::HookHome;
using Json = nlohmann::json;

constexpr int rounds = 150;

/// Makes settings as people and agents write them, and stranger ones.
class SettingsSource {
public:
  explicit SettingsSource(std::uint64_t seed) : m_random(seed) {}

  Json value(int depth) {
    switch (m_random.below(depth > 0 ? 8 : 6)) {
    case 0:
      return static_cast<std::int64_t>(m_random());
    case 1:
      return m_random();
    case 2:
      return pick({Json(nullptr), Json(true), Json(std::numeric_limits<std::int64_t>::min()),
                   Json(std::numeric_limits<std::uint64_t>::max()), Json(0.1), Json(-1e300),
                   Json(5e-324)});
    case 3:
      return m_random.uniform(-1e6, 1e6);
    case 4:
    case 5:
      return text();
    case 6:
      return list(depth);
    default:
      return object(depth);
    }
  }

  /// Settings with hooks of every shape in and beside the events.
  Json settings(const Json &ourEntry, const std::vector<std::string> &events) {
    Json made = object(3);
    if (m_random.below(4) > 0) {
      made["hooks"] = m_random.below(6) == 0 ? value(1) : hooks(ourEntry, events);
    }
    if (m_random.below(3) == 0) {
      made["version"] = value(0);
    }
    return made;
  }

private:
  Json pick(std::vector<Json> choices) { return choices[m_random.below(choices.size())]; }

  Json text() {
    static const std::vector<std::string> pieces = {
        "a",       "\"",   "\\",   "/",   "\n",
        "\x01",    "汉字", "🦑",   "é",   "e\xCC\x81",
        "العربية", " ",    "$(x)", "1.5", "\xF4\x8F\xBF\xBD",
        "#"};
    std::string made;
    for (std::size_t i = m_random.below(6); i > 0; --i) {
      made += pieces[m_random.below(pieces.size())];
    }
    return made;
  }
  Json list(int depth) {
    Json made = Json::array();
    for (std::size_t i = m_random.below(4); i > 0; --i) {
      made.push_back(value(depth - 1));
    }
    return made;
  }
  Json object(int depth) {
    Json made = Json::object();
    for (std::size_t i = m_random.below(5); i > 0; --i) {
      made[text().get<std::string>()] = value(depth - 1);
    }
    return made;
  }
  Json hook() { return pick({{{"type", "command"}, {"command", "mine"}}, value(2)}); }
  Json entry() {
    Json hooks = Json::array();
    for (std::size_t i = m_random.below(3); i > 0; --i) {
      hooks.push_back(hook());
    }
    return pick({{{"hooks", hooks}}, {{"hooks", hooks}, {"matcher", text()}}, hook()});
  }
  Json hooks(const Json &ourEntry, const std::vector<std::string> &events) {
    Json made = Json::object();
    for (const std::string &event : events) {
      Json entries = Json::array();
      for (std::size_t i = m_random.below(3); i > 0; --i) {
        entries.push_back(m_random.below(8) == 0 ? ourEntry : entry());
      }
      if (m_random.below(3) > 0) {
        made[event] = m_random.below(8) == 0 ? value(1) : entries;
      }
    }
    if (m_random.below(2) == 0) {
      made["PreToolUse"] = value(2);
    }
    return made;
  }

  SeededRandomSource m_random;
};

/// What connecting and disconnecting may take away of settings: our entries, events that held
/// nothing else, values of the wrong type.
Json pruned(Json settings, const std::vector<std::string> &events, const Json &ourEntry) {
  if (!settings.contains("hooks")) {
    return settings;
  }
  Json &hooks = settings["hooks"];
  if (!hooks.is_object()) {
    hooks = Json::object();
  }
  for (const std::string &event : events) {
    Json kept = Json::array();
    if (hooks.contains(event) && hooks[event].is_array()) {
      for (const Json &entry : hooks[event]) {
        if (entry != ourEntry) {
          kept.push_back(entry);
        }
      }
    }
    hooks.erase(event);
    if (!kept.empty()) {
      hooks[event] = kept;
    }
  }
  if (hooks.empty()) {
    settings.erase("hooks");
  }
  return settings;
}

class ConnectPropertyTest : public testing::TestWithParam<std::size_t> {};

TEST_P(ConnectPropertyTest, ConnectingTwiceAndDisconnectingGivesTheSettingsBack) {
  HookHome home;
  const auto agent = std::move(AgentConnectors::all(home.context())[GetParam()]);
  const QString file = agent->file().mid(home.home().path.size() + 1);
  ASSERT_TRUE(agent->connect().has_value());
  const Json fresh = home.json(file)["hooks"];
  std::vector<std::string> events;
  for (const auto &[event, entries] : fresh.items()) {
    events.push_back(event);
  }
  const Json ourEntry = fresh[events.front()][0];
  SettingsSource source(20261121 + GetParam());
  for (int round = 0; round < rounds; ++round) {
    const Json settings = source.settings(ourEntry, events);
    home.put(file, QByteArray::fromStdString(settings.dump()));
    ASSERT_TRUE(agent->connect().has_value());
    EXPECT_TRUE(agent->isConnected());
    const QByteArray once = home.get(file);
    // Settings may have held a second one of ours, which stays one of the event's entries.
    EXPECT_GE(once.count(QByteArray::fromStdString(Json(agent->command().toStdString()).dump())),
              static_cast<qsizetype>(events.size()))
        << settings.dump();
    ASSERT_TRUE(agent->connect().has_value());
    EXPECT_EQ(home.get(file), once);
    ASSERT_TRUE(agent->disconnect().has_value());
    Json expected = pruned(settings, events, ourEntry);
    if (agent->id() == QStringLiteral("cursor") && !expected.contains("version")) {
      expected["version"] = 1;
    }
    EXPECT_EQ(home.json(file), expected) << settings.dump();
  }
}

INSTANTIATE_TEST_SUITE_P(Agents, ConnectPropertyTest,
                         testing::Range(std::size_t{0}, AgentConnectors::all({}).size()));

} // namespace
} // namespace morvo
