#pragma once

#include "app/PanelEntries.h"
#include "app/PanelStage.h"
#include "app/StoreFixture.h"
#include "pet/MorvoSprites.h"

#include <QQuickItem>
#include <QQuickView>

namespace morvo::test {

/// The main panel on a store of fakes, drawn off screen.
class PanelFixture : public StoreFixture {
protected:
  /// What Qt Quick complains of fails the test.
  PanelFixture();
  ~PanelFixture() override;

  /// Starts the store, loads the panel and shows it.
  void open();
  /// Makes the stage on which the pet stands in the head, still or alive.
  void makeStage(bool isStill);
  /// Lets bindings, layouts and pictures settle.
  void settle();
  /// Brings up the tab of that row.
  void takeTab(int tab);
  [[nodiscard]] QImage grab();
  /// Writes the picture for the eye when `MORVO_PANEL_PICTURES` names a folder.
  void keepPicture(const QString &name);
  [[nodiscard]] QQuickItem *root() const { return m_view->rootObject(); }
  /// Every item that is seen, the root first.
  [[nodiscard]] QList<QQuickItem *> seenItems() const;
  /// The seen item of that class and text; null when there is none.
  [[nodiscard]] QQuickItem *seen(const char *property, const QVariant &value) const;
  void click(QQuickItem *item);
  /// The left button goes down or up at a place of the window.
  void mouse(QEvent::Type type, QPointF place);
  void press(int key);
  /// One press alone, as a key that is held down sends it again and again.
  void hold(int key);
  /// The seen control of that text; null when there is none.
  [[nodiscard]] QQuickItem *control(const QString &text) const;
  /// Puts one persona of the user's own on the list.
  void storeCustom(const QString &id, const QString &name);

  [[nodiscard]] static PetStore::Picture normal();
  [[nodiscard]] static PetStore::Picture overfull();

  PanelEntries::Doors m_doors;
  /// What the store shows before the panel is loaded.
  std::optional<PetStore::Picture> m_before;
  QStringList m_sent;
  std::unique_ptr<PanelEntries> m_entries;
  std::unique_ptr<MorvoSprites> m_sprites;
  std::unique_ptr<PetScene> m_scene;
  std::unique_ptr<PanelStage> m_stage;
  std::unique_ptr<QQuickView> m_view;
};

} // namespace morvo::test
