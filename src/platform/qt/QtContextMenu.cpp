#include "platform/qt/QtContextMenu.h"

#include <utility>

namespace morvo {
namespace {

/// A title stands as it is: nothing in it marks a key.
QString verbatim(const QString &title) {
  return QString(title).replace(u'&', QStringLiteral("&&"));
}

} // namespace

QtContextMenu::~QtContextMenu() { close(); }

void QtContextMenu::popUp(std::vector<Entry> entries, QPoint at) {
  close();
  m_menu.reset(new QMenu);
  m_life = std::make_shared<const bool>(true);
  fill(*m_menu, std::move(entries));
  m_menu->popup(at);
}

void QtContextMenu::close() {
  if (m_menu) {
    m_life.reset();
    m_menu->close();
    m_menu.reset();
  }
}

void QtContextMenu::fill(QMenu &menu, std::vector<Entry> entries) {
  for (Entry &entry : entries) {
    if (entry.isSeparator()) {
      menu.addSeparator();
    } else if (!entry.entries.empty()) {
      fill(*menu.addMenu(verbatim(entry.title)), std::move(entry.entries));
    } else {
      QAction *action = menu.addAction(verbatim(entry.title));
      action->setEnabled(entry.isEnabled());
      // Queued: the menu is gone from the screen before the entry acts.
      QObject::connect(
          action, &QAction::triggered, &menu,
          [choose = std::move(entry.choose), life = std::weak_ptr(m_life)] {
            if (choose && !life.expired()) {
              choose();
            }
          },
          Qt::QueuedConnection);
    }
  }
}

} // namespace morvo
