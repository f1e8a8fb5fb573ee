#pragma once

#include <QString>

/// Text of strangers, made so that what is seen is what is there.
namespace morvo::VisibleText {

/// The text with every character that would not be seen, or that would change the order or the look
/// of others, replaced by its number in brackets, "[U+202E]": control and format characters, those
/// of the writing direction among them, lone surrogates, blanks other than the usual ones, marks
/// piled up on one letter. Line feeds, tabs and the ideographic blank stay.
///
/// Right-to-left letters read in their own direction within a word, and nothing else does: the
/// words of a line stand from left to right in the order in which they are there. For that, marks
/// of the left-to-right direction (U+200E) are put before such a line and behind such a word.
[[nodiscard]] QString of(const QString &text);

/// The first `longest` characters, with "……" behind them where there are more. Before text is made
/// visible, so that no megabytes are.
[[nodiscard]] QString shortened(const QString &text, qsizetype longest);

/// The same as `of` for text that belongs on one line: line feeds and tabs are replaced too.
[[nodiscard]] QString ofLine(const QString &text);

} // namespace morvo::VisibleText
