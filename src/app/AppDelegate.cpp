#include "app/AppDelegate.h"

#include "app/MenubarIcon.h"
#include "base/Diagnostics.h"
#include "companion/Personas.h"

#include <QCoreApplication>
#include <QCursor>

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvo {
namespace {

constexpr auto framePeriod = std::chrono::milliseconds(110);
/// How many ticks pass before a pet without frames is looked at again: its folders are not listed
/// at the rate of the frames.
constexpr int ticksBetweenLooks = 45;
constexpr auto updateCheckDelay = std::chrono::milliseconds(1200);
constexpr auto showPanelDelay = std::chrono::milliseconds(600);

const QString defaultPet = QStringLiteral("morvo");
const QString showPetLine = QStringLiteral("代码跑通啦～闻到效率的味道，有点想喝奶茶。");
const QString linkScheme = QStringLiteral("morvopet:");

bool isLink(const QString &word) { return word.startsWith(linkScheme, Qt::CaseInsensitive); }

QString describe(const std::optional<QRect> &frame) {
  return frame ? QStringLiteral("(%1, %2, %3, %4)")
                     .arg(frame->x())
                     .arg(frame->y())
                     .arg(frame->width())
                     .arg(frame->height())
               : QStringLiteral("none");
}

} // namespace

const QString AppDelegate::quitWord = QStringLiteral("quit");

bool AppDelegate::understands(const QString &word) { return word == quitWord || isLink(word); }

AppDelegate::AppDelegate(Parts parts) : m_parts(std::move(parts)) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
  m_parts.applyAppearance();
  setupMenubar();
  const bool skipsUpdateCheck =
      m_parts.setting.environment().isOne(QStringLiteral("MORVO_SKIP_UPDATE_CHECK"));
  if (m_parts.checkForUpdate && !skipsUpdateCheck) {
    m_updateCheck = m_parts.scheduler.after(updateCheckDelay, m_parts.checkForUpdate);
  }
}

void AppDelegate::setupMenubar() {
  m_store = m_parts.makeStore();
  m_popover = m_parts.makePopover(*m_store);
  connect(m_store.get(), &PetStore::appearanceChanged, this, &AppDelegate::applyAppearance);
  m_parts.statusItem.setToolTip(m_store->persona().name);
  m_parts.statusItem.onActivated([this] { togglePopover(); });
  tickFrame();
  m_parts.statusItem.show();
  m_frameTimer = m_parts.scheduler.every(framePeriod, [this] { tickFrame(); });
  const Environment &environment = m_parts.setting.environment();
  if (environment.nonEmpty(QStringLiteral("MORVO_SHOW_PANEL"))) {
    showPanelAtStart();
  }
  if (environment.isOne(QStringLiteral("MORVO_SHOW_PET"))) {
    showPetAtStart();
  }
}

std::optional<MorvoPersona> AppDelegate::personaOfEnvironment() const {
  const auto id = m_parts.setting.environment().value(QStringLiteral("MORVO_PERSONA_ID"));
  return id ? Personas::find(m_parts.setting.store(), *id) : std::nullopt;
}

void AppDelegate::showPanelAtStart() {
  if (const auto persona = personaOfEnvironment()) {
    m_store->setPersona(*persona);
  }
  m_popover->setTransient(false);
  m_showPanel = m_parts.scheduler.after(showPanelDelay, [this] {
    if (!m_popover->isShown()) {
      showPopover();
    }
    Diagnostics::line(u"SHOWPANEL", QStringLiteral("shown=%1 btnWin=%2")
                                        .arg(m_popover->isShown() ? QStringLiteral("true")
                                                                  : QStringLiteral("false"),
                                             describe(m_parts.statusItem.geometry())));
  });
}

void AppDelegate::showPetAtStart() {
  if (const auto persona = personaOfEnvironment()) {
    m_store->setPersona(*persona);
  } else if (const auto id =
                 m_parts.setting.environment().value(QStringLiteral("MORVO_PERSONA_ID"))) {
    m_parts.pet.setPersona(*id);
  }
  m_parts.pet.setVisible(true);
  m_store->setReply(showPetLine);
}

void AppDelegate::open(const QStringList &words) {
  if (words.contains(quitWord)) {
    QCoreApplication::quit();
    return;
  }
  bool opened = false;
  for (const QString &word : words) {
    if (m_parts.handleOpenUrl && isLink(word)) {
      m_parts.handleOpenUrl(word);
      opened = true;
    }
  }
  if (!opened) {
    showPopover();
  }
}

void AppDelegate::togglePopover() {
  if (m_popover->isShown() || m_popover->hasJustClosedItself()) {
    m_popover->close();
  } else {
    showPopoverAt(QCursor::pos());
  }
}

void AppDelegate::showPopover() { showPopoverAt(std::nullopt); }

void AppDelegate::showPopoverAt(const std::optional<QPoint> &click) {
  // The agents' files may have changed since, by the command line or by hand.
  m_store->refreshHookFlags();
  m_popover->show(m_parts.statusItem.geometry(), click);
}

void AppDelegate::applyAppearance() const { m_parts.applyAppearance(); }

void AppDelegate::loadFrames(const QString &personaId) {
  auto frames = m_parts.idleFrames(personaId);
  if (frames && frames->empty() && personaId != defaultPet) {
    frames = m_parts.idleFrames(defaultPet);
  }
  if (!frames) {
    return;
  }
  m_frames = *std::move(frames);
  m_dottedFrames.clear();
  std::ranges::transform(m_frames, std::back_inserter(m_dottedFrames), MenubarIcon::overlayDot);
  m_iconPersonaId = personaId;
  m_frameIdx = 0;
  m_ticksToLook = ticksBetweenLooks;
}

void AppDelegate::tickFrame() {
  const QString personaId = m_parts.personaInPlay();
  const bool isMissing = m_frames.empty() && --m_ticksToLook <= 0;
  if (isMissing || m_iconPersonaId != personaId) {
    loadFrames(personaId);
  }
  const bool pending = m_store->pendingApproval().has_value();
  if (m_frames.empty()) {
    QIcon &title = m_titles.at(pending ? 1 : 0);
    if (title.isNull()) {
      title = MenubarIcon::title(pending);
    }
    setIcon(title);
    return;
  }
  m_frameIdx = (m_frameIdx + 1) % m_frames.size();
  setIcon(pending ? m_dottedFrames[m_frameIdx] : m_frames[m_frameIdx]);
}

void AppDelegate::setIcon(const QIcon &icon) {
  if (icon.cacheKey() != m_shownIcon) {
    m_shownIcon = icon.cacheKey();
    m_parts.statusItem.setIcon(icon);
  }
}

} // namespace morvo
