#pragma once

#include <QString>

/// The order in which people expect names: by the user's language, with numbers by their value.
namespace morvo::NaturalOrder {

/// Whether `a` stands before `b`. A strict order of all texts: names that the language holds equal
/// ("1" and "01") are told apart by their spelling. Where the system names no language, Chinese is
/// taken. Thread-safe.
[[nodiscard]] bool less(const QString &a, const QString &b);

} // namespace morvo::NaturalOrder
