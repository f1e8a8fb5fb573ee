#pragma once

#include "platform/ContextMenu.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace morvo::test {

/// A menu that the test reads and chooses from.
class FakeContextMenu final : public ContextMenu {
public:
  void popUp(std::vector<Entry> shown, QPoint where) override {
    entries = std::move(shown);
    at = where;
    ++openings;
  }
  void close() override { entries.clear(); }

  /// The entry with that title, submenus included; fails the program when there is none.
  [[nodiscard]] const Entry &entry(const QString &title) const {
    const Entry *found = find(entries, title);
    if (found == nullptr) {
      qFatal("the menu has no such entry");
    }
    return *found;
  }
  void choose(const QString &title) const {
    // The entry may close the menu.
    const auto choose = entry(title).choose;
    choose();
  }
  [[nodiscard]] static QStringList titles(const std::vector<Entry> &entries) {
    QStringList titles;
    for (const Entry &entry : entries) {
      titles << (entry.isSeparator() ? QStringLiteral("---") : entry.title);
    }
    return titles;
  }

  std::vector<Entry> entries;
  QPoint at;
  int openings = 0;

private:
  static const Entry *find(const std::vector<Entry> &entries, const QString &title) {
    for (const Entry &entry : entries) {
      if (entry.title == title) {
        return &entry;
      }
      if (const Entry *inside = find(entry.entries, title)) {
        return inside;
      }
    }
    return nullptr;
  }
};

} // namespace morvo::test
