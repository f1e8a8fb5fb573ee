#include "panels/PersonaAvatarItem.h"

#include "panels/PanelFixture.h"
#include "platform/SettingKeys.h"

namespace morvo {
namespace {

using namespace std::chrono_literals;

const QString dumpling = QStringLiteral("custom-1");
constexpr QSizeF size(130, 120);
/// On the emblem, beneath its sign.
constexpr QPoint pictureFoot(65, 86);

/// The picture over the panel, in its window.
class PersonaAvatarItemTest : public test::PanelFixture {
protected:
  void SetUp() override {
    storeCustom(dumpling, QStringLiteral("团子"));
    open();
    m_look.setStore(m_store.get());
    m_item = std::make_unique<PersonaAvatarItem>();
    m_item->setStore(m_store.get());
    m_item->setLook(&m_look);
    m_item->setPersona(dumpling);
    m_item->setSize(size);
    m_item->setParentItem(root());
    settle();
  }
  void TearDown() override { m_item.reset(); }
  QImage picture() {
    settle();
    return grab().copy(QRectF(m_item->mapToScene({}), size).toRect());
  }
  void feel(const QString &mood) {
    PetStore::Picture picture;
    picture.mood = mood;
    m_store->show(picture);
  }

  PanelLook m_look;
  std::unique_ptr<PersonaAvatarItem> m_item;
};

TEST_F(PersonaAvatarItemTest, ShowsThePersonasPicture) {
  const QImage shown = picture();
  m_item->setPersona(QStringLiteral("nobody"));
  EXPECT_NE(picture(), shown);
  m_item->setPersona(dumpling);
  EXPECT_EQ(picture(), shown);
}

TEST_F(PersonaAvatarItemTest, WearsTheColourOfTheMood) {
  feel(QStringLiteral("hungry"));
  const QColor krill = picture().pixelColor(pictureFoot);
  feel(QStringLiteral("mischievous"));
  const QColor coral = picture().pixelColor(pictureFoot);
  EXPECT_NE(krill, coral);
  feel(QStringLiteral("hungry"));
  EXPECT_EQ(picture().pixelColor(pictureFoot), krill);
}

TEST_F(PersonaAvatarItemTest, WearsTheColourOfTheTheme) {
  feel(QStringLiteral("calm"));
  const QImage teal = picture();
  set(SettingKeys::themeColor, QStringLiteral("pink"));
  m_store->announceAppearanceChange();
  EXPECT_NE(picture().pixelColor(pictureFoot), teal.pixelColor(pictureFoot));
}

TEST_F(PersonaAvatarItemTest, GlowsWithoutAnEdge) {
  const QImage shown = picture();
  m_item->setVisible(false);
  const QImage ground = picture();
  constexpr int hardlySeen = 8;
  for (const QPoint corner : {QPoint(0, 60), QPoint(129, 60), QPoint(65, 0), QPoint(65, 119)}) {
    EXPECT_NEAR(shown.pixelColor(corner).green(), ground.pixelColor(corner).green(), hardlySeen);
  }
  EXPECT_GT(shown.pixelColor(65, 24).green(), ground.pixelColor(65, 24).green() + hardlySeen);
}

TEST_F(PersonaAvatarItemTest, WritesItsSignInTheTextSizeOfTheSettings) {
  const QImage usual = picture();
  set(SettingKeys::fontScale, 1.4);
  m_store->announceAppearanceChange();
  EXPECT_NE(picture(), usual);
}

TEST_F(PersonaAvatarItemTest, TakesANewNamesSign) {
  const QImage before = picture();
  m_store->renameCustomPersona(dumpling, QStringLiteral("麻薯"));
  EXPECT_NE(picture(), before);
}

TEST_F(PersonaAvatarItemTest, BreathesWhileItIsOnTheScreen) {
  EXPECT_TRUE(m_item->isRunning());
  const QImage before = picture();
  EXPECT_EQ(picture(), before);
  advance(1300ms);
  EXPECT_NE(picture(), before);
}

TEST_F(PersonaAvatarItemTest, RestsWhileItIsHidden) {
  m_item->setVisible(false);
  EXPECT_FALSE(m_item->isRunning());
  m_item->setVisible(true);
  EXPECT_TRUE(m_item->isRunning());
}

TEST_F(PersonaAvatarItemTest, RestsWhileItsWindowIsClosed) {
  m_view->hide();
  EXPECT_FALSE(m_item->isRunning());
  m_view->show();
  EXPECT_TRUE(m_item->isRunning());
}

TEST_F(PersonaAvatarItemTest, RestsOutsideAnyWindow) {
  m_item->setParentItem(nullptr);
  EXPECT_FALSE(m_item->isRunning());
}

TEST_F(PersonaAvatarItemTest, RestsWithoutAStore) {
  m_item->setStore(nullptr);
  EXPECT_FALSE(m_item->isRunning());
  EXPECT_FALSE(picture().isNull());
}

} // namespace
} // namespace morvo
