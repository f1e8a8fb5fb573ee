#include "pet/PetCare.h"

#include "platform/SettingKeys.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

namespace morvo {
namespace {

struct Milestone {
  std::int64_t total = 0;
  QStringView text;
};

constexpr std::array milestones{Milestone{1, u"第一次互动"}, Milestone{10, u"渐渐熟悉"},
                                Milestone{30, u"成了伴宠"}, Milestone{100, u"老搭档"}};

} // namespace

PetCare::PetCare(Setting setting, const Clock &clock)
    : m_setting(std::move(setting)), m_clock(&clock) {}

void PetCare::recordPet() { record(SettingKeys::carePetCount); }

void PetCare::recordFeed() { record(SettingKeys::careFeedCount); }

void PetCare::recordChat() { record(SettingKeys::careChatCount); }

void PetCare::record(const QString &counter) {
  const int count = m_setting.integer(counter, 0);
  m_setting.store().set(counter, count < std::numeric_limits<int>::max() ? count + 1 : count);
  const std::chrono::duration<double> now = m_clock->now().time_since_epoch();
  m_setting.store().set(SettingKeys::careLastAt, now.count());
}

WallTime PetCare::lastCareAt() const {
  // A stored time that the calendar cannot hold is taken as its farthest, as far as milliseconds
  // still fit.
  constexpr double farthest = 9e12;
  const double since1970 = m_setting.dbl(SettingKeys::careLastAt, 0);
  const std::chrono::duration<double> clamped(std::clamp(since1970, -farthest, farthest));
  return WallTime(std::chrono::duration_cast<WallTime::duration>(clamped));
}

std::optional<QString> PetCare::consumeMilestoneIfAny() {
  const std::int64_t total = std::int64_t{m_setting.integer(SettingKeys::carePetCount, 0)} +
                             m_setting.integer(SettingKeys::careFeedCount, 0) +
                             m_setting.integer(SettingKeys::careChatCount, 0);
  const auto *const hit = std::ranges::find(milestones, total, &Milestone::total);
  if (hit == milestones.end()) {
    return std::nullopt;
  }
  const QString key = SettingKeys::careMilestonePrefix + QString::number(total);
  if (m_setting.boolean(key, false)) {
    return std::nullopt;
  }
  m_setting.store().set(key, true);
  return hit->text.toString();
}

} // namespace morvo
