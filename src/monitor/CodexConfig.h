#pragma once

#include <QByteArray>

/// The switch for hooks in Codex's `config.toml`: `hooks = true` in the section [features].
///
/// A line scanner that leaves every other byte as it is, not a TOML parser. It knows a line only
/// when all of it is one of `[section]` or `key = value`, a comment behind it aside. So it does not
/// see `[ features ]`, `features.hooks = true`, `features = { hooks = true }` or a quoted key, and
/// it takes lines inside a multi-line text for real ones. `isSafeChange` tells when that would do
/// harm.
namespace morvo::CodexConfig {

/// Whether the first `hooks` of a section [features] has the value `true`.
[[nodiscard]] bool hooksFeatureEnabled(const QByteArray &toml);

/// The text with the switch on; the same text when it is on already. An existing `hooks` line of
/// the first section [features] is replaced, its comment included; else a line is inserted behind
/// the section's head; else the section is added at the end.
[[nodiscard]] QByteArray withHooksFeatureEnabled(const QByteArray &toml);

/// Whether Codex would still understand the text: false when `before` is TOML and `after` is not,
/// or does not turn the switch on. A text that was no TOML before cannot be spoiled.
[[nodiscard]] bool isSafeChange(const QByteArray &before, const QByteArray &after);

} // namespace morvo::CodexConfig
