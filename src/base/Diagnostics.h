#pragma once

#include <QString>

#include <functional>

/// Lines on standard error with a bracketed tag: the program's only log.
namespace morvo::Diagnostics {

/// Writes "[TAG] " + text + line feed in one write. Control characters in `text` (it may quote
/// hostile input) become blanks, so one call is one line. Thread-safe.
void line(QStringView tag, QStringView text);

/// Takes the lines instead of standard error while it lives; for tests. One at a time.
class Capture {
public:
  explicit Capture(std::function<void(QString)> sink);
  Capture(const Capture &) = delete;
  Capture &operator=(const Capture &) = delete;
  ~Capture();
};

} // namespace morvo::Diagnostics
