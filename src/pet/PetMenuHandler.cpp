#include "pet/PetMenuHandler.h"

#include "base/VisibleText.h"
#include "pet/FrameSetName.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace morvo {
namespace {

using Entry = ContextMenu::Entry;

constexpr double scaleStep = 0.2;
constexpr qsizetype longestName = 40; ///< In characters.
const QString presentMode = QStringLiteral("  ✓");
const QString presentPet = QStringLiteral(" ✓");

Entry hint(const QString &text) { return {.title = text}; }

Entry separator() { return {}; }

/// A name that a pack or a person has chosen, fit for a menu: a line of a length that leaves the
/// screen free, without the tab behind which menus show a shortcut.
QString entryName(const QString &name) {
  return VisibleText::shortened(name.simplified(), longestName);
}

QString titleOf(const PetMenuAction &action) {
  const QString name = entryName(action.label);
  if (!action.hasFrames) {
    return name + QStringLiteral("（未生成）");
  }
  if (action.frameSet == FrameSetName::idle) {
    return name + QStringLiteral("（待机）");
  }
  return action.isLoop ? name + QStringLiteral("（循环）") : name;
}

} // namespace

PetMenuHandler::PetMenuHandler(Body body) : m_body(std::move(body)) {}

std::vector<Entry> PetMenuHandler::entries(PetInteractions &interactions) const {
  std::vector<Entry> entries{
      hint(QStringLiteral("行为模式")),
      modeEntry(QStringLiteral("🟢 自然陪伴"), PetBehaviorMode::natural),
      modeEntry(QStringLiteral("🟠 活泼玩耍"), PetBehaviorMode::playful),
      modeEntry(QStringLiteral("🔵 安静休息"), PetBehaviorMode::rest),
      separator(),
      hint(QStringLiteral("按住拖动拎起来 ✋ · 快甩抛出去")),
      separator(),
      {QStringLiteral("摸摸它"), [&interactions] { interactions.petTapped(); }},
      {QStringLiteral("散个步"), m_body.stroll},
      {QStringLiteral("回到身边"), m_body.comeHere},
      {QStringLiteral("随机表演"), [&interactions] { interactions.playRandomPetAction(); }},
      {QStringLiteral("喂食"), [&interactions] { interactions.feed(); }}};
  if (auto actions = actionEntries(interactions); !actions.empty()) {
    entries.push_back({.title = QStringLiteral("做动作…"), .entries = std::move(actions)});
  }
  const auto scaleBy = [&interactions](double step) {
    return [&interactions, step] { interactions.setPetScale(interactions.petScale() + step); };
  };
  const std::vector<Entry> rest{
      {.title = QStringLiteral("换形象"), .entries = petEntries(interactions)},
      separator(),
      {QStringLiteral("放大"), scaleBy(scaleStep)},
      {QStringLiteral("缩小"), scaleBy(-scaleStep)},
      separator(),
      {QStringLiteral("藏起来"), m_body.hide},
      {QStringLiteral("退出"), [&interactions] { interactions.quitApp(); }}};
  std::ranges::copy(rest, std::back_inserter(entries));
  return entries;
}

Entry PetMenuHandler::modeEntry(const QString &title, PetBehaviorMode mode) const {
  const bool isPresent = m_body.behaviorMode() == mode;
  return {isPresent ? title + presentMode : title, [this, mode] { m_body.setBehaviorMode(mode); }};
}

std::vector<Entry> PetMenuHandler::actionEntries(PetInteractions &interactions) const {
  std::vector<Entry> entries;
  std::ranges::transform(
      m_body.catalogActions(), std::back_inserter(entries),
      [&interactions](const PetMenuAction &action) { return actionEntry(interactions, action); });
  return entries;
}

Entry PetMenuHandler::actionEntry(PetInteractions &interactions, const PetMenuAction &action) {
  const QString title = titleOf(action);
  return {title, [&interactions, title, action] {
            if (action.frameSet.isEmpty()) {
              interactions.setReply(QStringLiteral("动作参数丢失"));
            } else if (!action.hasFrames) {
              interactions.setReply(u'「' + title + QStringLiteral("」还没生成动画帧"));
            } else {
              interactions.playPetAction(action.frameSet);
            }
          }};
}

std::vector<Entry> PetMenuHandler::petEntries(PetInteractions &interactions) {
  std::vector<Entry> entries;
  std::ranges::transform(
      interactions.petChoices(), std::back_inserter(entries),
      [&interactions](const PetChoice &choice) { return petEntry(interactions, choice); });
  return entries;
}

Entry PetMenuHandler::petEntry(PetInteractions &interactions, const PetChoice &choice) {
  const QString name = entryName(choice.name);
  return {choice.isPresent ? name + presentPet : name,
          [&interactions, id = choice.id] { interactions.choosePet(id); }};
}

} // namespace morvo
