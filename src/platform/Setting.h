#pragma once

#include "base/Environment.h"
#include "platform/SettingsStore.h"

#include <algorithm>

namespace morvo {

/// Typed reads of the settings store, with the default given at the call. Nothing is cached.
/// A light value: copy it freely; it refers to a store that must outlive it. Thread-safe.
///
/// Conversions of stored objects:
/// - `boolean`: a boolean as it is; a number is true when it is not zero; a text is true when,
///   after leading white space, an optional sign and leading zeros, it begins with Y, y, T, t or a
///   digit from 1 to 9; anything else is false.
/// - `dbl`: a number as it is; a text when, trimmed, all of it is a finite decimal number. A
///   boolean, another text or another type reads as the default.
/// - `integer`: a number truncated towards zero and saturated; a text by its leading decimal
///   digits, 0 when there are none; a boolean as 1 or 0; any other type as 0.
/// - `str`: a text as it is; a number as its decimal text; anything else as the default.
class Setting {
public:
  /// What a number is taken into.
  struct Limits {
    double least;
    double most;

    [[nodiscard]] double take(double number) const { return std::clamp(number, least, most); }
  };
  static constexpr Limits petOpacityLimits{0.3, 1};
  static constexpr Limits petScaleLimits{0.8, 2.4};

  Setting(SettingsStore &store, Environment environment);

  [[nodiscard]] double dbl(const QString &key, double fallback) const;
  [[nodiscard]] bool boolean(const QString &key, bool fallback) const;
  [[nodiscard]] int integer(const QString &key, int fallback) const;
  [[nodiscard]] QString str(const QString &key, const QString &fallback) const;

  /// Factor on all text sizes, 0.85 to 1.4; a number in `MORVO_FONTSCALE` is taken as it is.
  [[nodiscard]] double fontScale() const;
  /// Opacity of the pet, within its limits; a number in `MORVO_PETOPACITY` is taken as it is.
  [[nodiscard]] double petOpacity() const;
  /// Size factor of the desktop pet, within its limits.
  [[nodiscard]] double petScale() const;
  /// How long the speech bubble stands, in seconds, 2 to 20.
  [[nodiscard]] double bubbleDwell() const;
  /// Least time between two bubbles, in seconds, at least 5.
  [[nodiscard]] double proactiveMinInterval() const;
  /// How long a line counts as said, in seconds, at least 30.
  [[nodiscard]] double proactiveDedupWindow() const;
  /// Seconds between two usage captures; 60 for anything below 1.
  [[nodiscard]] int captureSeconds() const;

  [[nodiscard]] SettingsStore &store() const { return *m_store; }
  [[nodiscard]] const Environment &environment() const { return m_environment; }

private:
  [[nodiscard]] std::optional<double> environmentNumber(const QString &name) const;

  SettingsStore *m_store;
  Environment m_environment;
};

} // namespace morvo
