#include "pet/BehaviorDirector.h"
#include "pet/PetScene.h"
#include "platform/SettingKeys.h"

#include <variant>

namespace morvo {
namespace {

const QString strollName = QStringLiteral("stroll");

/// A decision that comes this late was due while nobody looked.
constexpr Duration unseenAfter = std::chrono::seconds(5);

} // namespace

void PetScene::scheduleDirector(Duration after) {
  if (!m_pet) {
    return;
  }
  m_stage.root()->run(
      Action::sequence({Action::wait(after), Action::run([this] { directorTick(); })}),
      Keys::director);
}

BehaviorContext PetScene::directorContext() const {
  BehaviorContext context{
      .mood = m_mood,
      .stickyLoopActive = m_stickyLoopState.has_value(),
      .performing = isPerforming(),
      .quiet = m_quietMode,
      .lastAutonomous = m_lastAutonomous,
      .mode = petBehaviorMode(m_setting.str(SettingKeys::behaviorMode, {})),
      .strollAvailable = m_strollHandler && !m_gaitActive,
  };
  if (m_lastPerformanceAt) {
    context.secondsSincePerformance = inSeconds(m_stage.now() - *m_lastPerformanceAt);
  }
  return context;
}

void PetScene::directorTick() {
  // After a long sleep the stage is still catching up: what the pet would have done in the
  // meantime is not played back, and it does not begin with it in the first moment either.
  const Duration late = m_clock->instant() - m_stage.now();
  if (late > unseenAfter) {
    scheduleDirector(late + firstDecision);
    return;
  }
  const auto decision = BehaviorDirector::decide(directorContext(), currentPack(),
                                                 availableFrameSetsNow(), *m_random);
  carryOut(decision.move);
  scheduleDirector(seconds(decision.wait));
}

void PetScene::carryOut(const BehaviorDecision::Move &move) {
  if (const auto *gesture = std::get_if<ProceduralGesture>(&move)) {
    perform(*gesture);
  } else if (const auto *play = std::get_if<BehaviorDecision::Play>(&move)) {
    m_lastAutonomous = play->frameSet;
    react(play->frameSet);
  } else if (std::holds_alternative<BehaviorDecision::Stroll>(move)) {
    m_lastAutonomous = strollName;
    m_lastPerformanceAt = m_stage.now();
    m_strollHandler();
  }
}

} // namespace morvo
