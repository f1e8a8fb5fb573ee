#include "monitor/ClaudeStyleHookMerger.h"

#include <algorithm>

namespace morvo::ClaudeStyleHookMerger {
namespace {

using Json = nlohmann::json;

constexpr const char *hooksKey = "hooks";
constexpr const char *commandKey = "command";
constexpr const char *typeKey = "type";
constexpr const char *commandType = "command";

/// The member of that name and type; the empty value of the type when there is none.
Json member(const Json &object, const std::string &key, Json::value_t type) {
  const auto found = object.is_object() ? object.find(key) : object.end();
  return found != object.end() && found->type() == type ? *found : Json(type);
}

/// Whether the value itself holds the command.
bool isOurs(const Json &value, const std::string &command) {
  return member(value, commandKey, Json::value_t::string) == Json(command);
}

bool groupContains(const Json &entry, const std::string &command) {
  const Json hooks = member(entry, hooksKey, Json::value_t::array);
  return std::ranges::any_of(hooks, [&](const Json &hook) { return isOurs(hook, command); });
}

/// Takes our hooks out of the group; whether that emptied it.
bool emptiesGroup(Json &entry, const std::string &command) {
  if (!groupContains(entry, command)) {
    return false;
  }
  auto &hooks = entry[hooksKey].get_ref<Json::array_t &>();
  std::erase_if(hooks, [&](const Json &hook) { return isOurs(hook, command); });
  return hooks.empty();
}

/// Takes our entries out of the event's array; whether that emptied it.
bool emptiesEvent(Json &groups, const std::string &command) {
  auto &entries = groups.get_ref<Json::array_t &>();
  Json::array_t kept;
  for (Json &entry : entries) {
    if (!isOurs(entry, command) && !emptiesGroup(entry, command)) {
      kept.push_back(std::move(entry));
    }
  }
  const bool anyRemoved = kept.size() < entries.size();
  entries = std::move(kept);
  return anyRemoved && entries.empty();
}

} // namespace

Json commandHook(const QString &command) {
  return {{typeKey, commandType}, {commandKey, command.toStdString()}};
}

Json group(const Json &hook) { return {{hooksKey, Json::array({hook})}}; }

Json withEntriesAdded(Json settings, const std::vector<Entry> &entries, const QString &command) {
  Json hooks = member(settings, hooksKey, Json::value_t::object);
  for (const Entry &entry : entries) {
    const auto event = entry.event.toStdString();
    Json groups = member(hooks, event, Json::value_t::array);
    if (!groupsContain(groups, command)) {
      groups.push_back(entry.value);
    }
    hooks[event] = std::move(groups);
  }
  settings[hooksKey] = std::move(hooks);
  return settings;
}

Json withAdded(Json settings, const QStringList &events, const QString &command) {
  std::vector<Entry> entries;
  for (const QString &event : events) {
    entries.push_back({event, group(commandHook(command))});
  }
  return withEntriesAdded(std::move(settings), entries, command);
}

Json withRemoved(Json settings, const QStringList &events, const QString &command) {
  const auto hooks = settings.is_object() ? settings.find(hooksKey) : settings.end();
  if (hooks == settings.end() || !hooks->is_object()) {
    return settings;
  }
  bool anyRemoved = false;
  for (const QString &event : events) {
    const auto groups = hooks->find(event.toStdString());
    if (groups != hooks->end() && groups->is_array() &&
        emptiesEvent(*groups, command.toStdString())) {
      hooks->erase(groups);
      anyRemoved = true;
    }
  }
  if (anyRemoved && hooks->empty()) {
    settings.erase(hooks);
  }
  return settings;
}

bool isConnected(const Json &settings, const QStringList &stopKeys, const QString &command) {
  const Json hooks = member(settings, hooksKey, Json::value_t::object);
  return std::ranges::any_of(stopKeys, [&](const QString &event) {
    return groupsContain(member(hooks, event.toStdString(), Json::value_t::array), command);
  });
}

bool groupsContain(const Json &groups, const QString &command) {
  const auto ours = command.toStdString();
  return groups.is_array() && std::ranges::any_of(groups, [&](const Json &entry) {
           return isOurs(entry, ours) || groupContains(entry, ours);
         });
}

} // namespace morvo::ClaudeStyleHookMerger
