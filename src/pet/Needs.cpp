#include "pet/Needs.h"

#include <QString>

#include <array>
#include <utility>

namespace morvo {
namespace {

using Key = std::pair<QString, double Needs::*>;

const std::array<Key, 4> &keys() {
  static const std::array<Key, 4> keys{
      Key{QStringLiteral("belly"), &Needs::belly}, Key{QStringLiteral("energy"), &Needs::energy},
      Key{QStringLiteral("affinity"), &Needs::affinity}, Key{QStringLiteral("bond"), &Needs::bond}};
  return keys;
}

} // namespace

std::optional<Needs> needsFromJson(const QJsonObject &json) {
  Needs needs;
  for (const auto &[key, field] : keys()) {
    const QJsonValue value = json.value(key);
    if (!value.isDouble()) {
      return std::nullopt;
    }
    needs.*field = value.toDouble();
  }
  return needs;
}

QJsonObject toJson(const Needs &needs) {
  QJsonObject json;
  for (const auto &[key, field] : keys()) {
    json.insert(key, needs.*field);
  }
  return json;
}

} // namespace morvo
