#pragma once

#include <QString>

/// Text of strangers, made so that what is seen is what is there.
namespace morvo::VisibleText {

/// The text with every character that would not be seen, or that would change the order or the look
/// of others, replaced by its number in brackets, "[U+202E]": control and format characters, those
/// of the writing direction among them, lone surrogates, blanks other than the usual ones. Line
/// feeds, tabs and the ideographic blank stay.
[[nodiscard]] QString of(const QString &text);

/// The same for text that belongs on one line: line feeds and tabs are replaced too.
[[nodiscard]] QString ofLine(const QString &text);

} // namespace morvo::VisibleText
