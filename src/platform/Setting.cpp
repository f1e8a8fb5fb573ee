#include "platform/Setting.h"

#include "platform/SettingKeys.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace morvo {
namespace {

bool isNumber(const QVariant &value) {
  switch (value.typeId()) {
  case QMetaType::Int:
  case QMetaType::UInt:
  case QMetaType::LongLong:
  case QMetaType::ULongLong:
  case QMetaType::Double:
  case QMetaType::Float:
    return true;
  default:
    return false;
  }
}

/// The number that all of the text is, without white space around it or separators in it.
std::optional<double> finiteNumber(QStringView text) {
  bool valid = false;
  const double number = text.toDouble(&valid);
  return valid && std::isfinite(number) && text == text.trimmed() ? std::optional(number)
                                                                  : std::nullopt;
}

/// The text without leading white space, one sign and leading zeros.
QStringView significant(QStringView text) {
  text = text.trimmed();
  if (text.startsWith(u'+') || text.startsWith(u'-')) {
    text = text.sliced(1);
  }
  while (text.startsWith(u'0')) {
    text = text.sliced(1);
  }
  return text;
}

bool textIsTrue(const QString &text) {
  const QStringView rest = significant(text);
  if (rest.isEmpty()) {
    return false;
  }
  const QChar first = rest.front();
  return QStringView(u"YyTt123456789").contains(first);
}

int saturated(double number) {
  constexpr double lowest = std::numeric_limits<int>::min();
  constexpr double highest = std::numeric_limits<int>::max();
  return std::isnan(number) ? 0 : static_cast<int>(std::clamp(number, lowest, highest));
}

int leadingInteger(const QString &text) {
  const QStringView trimmed = QStringView(text).trimmed();
  double number = 0;
  for (const QChar character : significant(text)) {
    if (character < u'0' || character > u'9') {
      break;
    }
    number = number * 10 + (character.unicode() - u'0');
  }
  return saturated(trimmed.startsWith(u'-') ? -number : number);
}

} // namespace

Setting::Setting(SettingsStore &store, Environment environment)
    : m_store(&store), m_environment(std::move(environment)) {}

double Setting::dbl(const QString &key, double fallback) const {
  const auto object = m_store->object(key);
  if (!object) {
    return fallback;
  }
  if (isNumber(*object)) {
    const double number = object->toDouble();
    return std::isfinite(number) ? number : fallback;
  }
  if (object->typeId() == QMetaType::QString) {
    return finiteNumber(object->toString().trimmed()).value_or(fallback);
  }
  return fallback;
}

bool Setting::boolean(const QString &key, bool fallback) const {
  const auto object = m_store->object(key);
  if (!object) {
    return fallback;
  }
  if (object->typeId() == QMetaType::Bool) {
    return object->toBool();
  }
  if (isNumber(*object)) {
    return object->toDouble() != 0;
  }
  return object->typeId() == QMetaType::QString && textIsTrue(object->toString());
}

int Setting::integer(const QString &key, int fallback) const {
  const auto object = m_store->object(key);
  if (!object) {
    return fallback;
  }
  if (object->typeId() == QMetaType::Bool) {
    return object->toBool() ? 1 : 0;
  }
  if (isNumber(*object)) {
    return saturated(object->toDouble());
  }
  return object->typeId() == QMetaType::QString ? leadingInteger(object->toString()) : 0;
}

QString Setting::str(const QString &key, const QString &fallback) const {
  const auto object = m_store->object(key);
  if (!object) {
    return fallback;
  }
  return object->typeId() == QMetaType::QString || isNumber(*object) ? object->toString()
                                                                     : fallback;
}

std::optional<double> Setting::environmentNumber(const QString &name) const {
  const auto text = m_environment.value(name);
  return text ? finiteNumber(*text) : std::nullopt;
}

double Setting::fontScale() const {
  if (const auto forced = environmentNumber(QStringLiteral("MORVO_FONTSCALE"))) {
    return *forced;
  }
  return std::clamp(dbl(SettingKeys::fontScale, 1.0), 0.85, 1.4);
}

double Setting::petOpacity() const {
  if (const auto forced = environmentNumber(QStringLiteral("MORVO_PETOPACITY"))) {
    return *forced;
  }
  return petOpacityLimits.take(dbl(SettingKeys::petOpacity, 1.0));
}

double Setting::petScale() const { return petScaleLimits.take(dbl(SettingKeys::petScale, 1.4)); }

double Setting::bubbleDwell() const {
  return std::clamp(dbl(SettingKeys::bubbleDwell, 6), 2.0, 20.0);
}

double Setting::proactiveMinInterval() const {
  return std::max(dbl(SettingKeys::proactiveMinInterval, 45), 5.0);
}

double Setting::proactiveDedupWindow() const {
  return std::max(dbl(SettingKeys::proactiveDedupWindow, 180), 30.0);
}

int Setting::captureSeconds() const {
  constexpr int standard = 60;
  const int stored = integer(SettingKeys::captureSeconds, standard);
  return stored < 1 ? standard : stored;
}

} // namespace morvo
