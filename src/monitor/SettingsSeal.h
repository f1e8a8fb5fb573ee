#pragma once

#include <QByteArray>

/// Carries what a strict JSON library would reject or round through that library unharmed.
///
/// Agents write escapes of single surrogates and numbers that no 64-bit integer or double holds. A
/// sealed text has private characters in their place; opening the text that the library writes puts
/// them back as they stood. Every text can be sealed: a private character that it already holds is
/// doubled, so nothing is ambiguous.
namespace morvo::SettingsSeal {

/// `text` with fractions, exponents, long integers and single surrogate escapes sealed. It is JSON
/// if and only if `text` is, single surrogates and numbers beyond a double aside.
[[nodiscard]] QByteArray sealed(const QByteArray &text);

/// The inverse, on a text whose values come from a sealed one.
[[nodiscard]] QByteArray opened(const QByteArray &text);

} // namespace morvo::SettingsSeal
