#pragma once

#include <QPoint>
#include <QString>

#include <functional>
#include <vector>

namespace morvo {

/// The menu that a right click opens. Main thread.
class ContextMenu {
public:
  struct Entry {
    /// An entry of nothing at all is a separator.
    QString title;
    /// What choosing the entry does; without it the entry can be seen but not chosen.
    std::function<void()> choose;
    /// The submenu; with one the entry only opens it.
    std::vector<Entry> entries;

    [[nodiscard]] bool isSeparator() const { return title.isEmpty() && !isEnabled(); }
    [[nodiscard]] bool isEnabled() const { return choose || !entries.empty(); }
  };

  virtual ~ContextMenu() = default;

  /// Shows the entries with the menu's corner at this point of the screen, in place of a menu that
  /// is still open, and returns at once. What is chosen is called later; the menu is closed then.
  virtual void popUp(std::vector<Entry> entries, QPoint at) = 0;
  /// Takes an open menu away; none of its entries is called any more.
  virtual void close() = 0;
};

} // namespace morvo
