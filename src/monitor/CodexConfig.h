#pragma once

#include <QByteArray>

/// The switch for hooks in Codex's `config.toml`: `hooks = true` in the section [features].
///
/// A line scanner that leaves every other byte as it is, not a TOML parser. It knows a line only
/// when all of it is one of `[section]` or `key = value`, a comment behind it aside. So it does not
/// see `[ features ]`, `features.hooks = true`, `features = { hooks = true }` or a quoted key, and
/// it takes lines inside a multi-line text for real ones. `isSafeChange` tells when that would do
/// harm, `byToml` what Codex makes of the text.
namespace morvo::CodexConfig {

/// Whether the first `hooks` of a section [features] has the value `true`.
[[nodiscard]] bool hooksFeatureEnabled(const QByteArray &toml);

/// The text with the switch on; the same text when it is on already. An existing `hooks` line of
/// the first section [features] is replaced, its comment included; else a line is inserted behind
/// the section's head; else the section is added at the end.
[[nodiscard]] QByteArray withHooksFeatureEnabled(const QByteArray &toml);

/// What a TOML parser sees in a text.
enum class Switch {
  notUnderstood, ///< It is no TOML, or beyond the limits below.
  off,           ///< No `features.hooks`, or another value than `true`.
  on,
};

/// Longer texts are not parsed.
inline constexpr qsizetype longestText = qsizetype{1} << 20U;
/// Nor are texts with a line of more dots: each may deepen a key, and the parser recurses.
inline constexpr qsizetype mostDotsInLine = 500;

/// The switch as Codex reads it.
[[nodiscard]] Switch byToml(const QByteArray &toml);

/// Whether the change turns the switch on and does nothing else, by the values that a TOML parser
/// finds before and behind it. A text that was no TOML before cannot be spoiled; of one beyond the
/// limits nobody knows.
[[nodiscard]] bool isSafeChange(const QByteArray &before, const QByteArray &after);

} // namespace morvo::CodexConfig
