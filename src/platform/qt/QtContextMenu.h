#pragma once

#include "platform/ContextMenu.h"

#include <QMenu>

#include <memory>

namespace morvo {

/// A menu as Qt draws it. Needs a QApplication, which must outlive it. Main thread.
class QtContextMenu final : public ContextMenu {
public:
  QtContextMenu() = default;
  QtContextMenu(const QtContextMenu &) = delete;
  QtContextMenu &operator=(const QtContextMenu &) = delete;
  ~QtContextMenu() override;

  void popUp(std::vector<Entry> entries, QPoint at) override;
  void close() override;

private:
  /// An entry may open the next menu while this one still closes.
  struct DeleteLater {
    void operator()(QMenu *menu) const { menu->deleteLater(); }
  };
  void fill(QMenu &menu, std::vector<Entry> entries);

  std::unique_ptr<QMenu, DeleteLater> m_menu;
  /// Ends with the menu: what was chosen before is then no longer called.
  std::shared_ptr<const bool> m_life;
};

} // namespace morvo
