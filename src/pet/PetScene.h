#pragma once

#include "base/Clock.h"
#include "base/RandomSource.h"
#include "pet/BehaviorDecision.h"
#include "pet/MorvoSprites.h"
#include "pet/MorvoTheme.h"
#include "pet/PetMenuAction.h"
#include "pet/PetPack.h"
#include "pet/stage/Stage.h"
#include "platform/Setting.h"

#include <QSet>

#include <functional>

namespace morvo {

struct BehaviorContext;

/// The little stage on which the pet lives: plays frame loops and one-shots on the sprite, keeps
/// the body breathing, bobbing and swaying beneath, so that even a single picture looks alive, and
/// lets the pet act by itself now and then. Knows no window. Main thread.
///
/// Points, y up. From the outside in: the scene, `lifeNode` (place, tilt, facing), `breathNode`
/// (breathing, squashes), `pet` (the sprite, standing on its feet).
class PetScene {
public:
  /// `sprites`, `clock` and `random` must outlive the scene; `sprites` is shared by all scenes.
  PetScene(QSizeF size, PetFiles files, MorvoSprites &sprites, Setting setting, Clock &clock,
           RandomSource &random);
  PetScene(const PetScene &) = delete;
  PetScene &operator=(const PetScene &) = delete;
  ~PetScene();

  /// Puts the pet on the stage; to be called when the scene is first shown. Later calls do nothing.
  void present();

  /// Lets time pass until `to`.
  void advance(Instant to);
  /// Lets time pass until `time` seconds after the pet was presented, at most a day. Nothing before
  /// that, and for what is no number or already past.
  void update(double time);
  /// Grows whenever something visible has changed: draw when it differs from what was drawn.
  [[nodiscard]] std::uint64_t revision() const;
  /// How long to wait before the next `advance`: the frame time while frames play, 1/24 second
  /// while only the body moves, else until the next thing is due; nothing while nothing runs. Ask
  /// again after every `advance` and every other call.
  [[nodiscard]] std::optional<Duration> frameInterval() const;

  /// Plays an action of the pack, or a frame set. False, and a line on standard error, when it has
  /// fewer than two frames; the pet then goes on undisturbed.
  bool react(const QString &kind);
  void setMood(const QString &mood);
  /// Sets the persona of the shared sprites too, and has all its files looked at again.
  void setPersona(const QString &personaId);
  /// What the pet can be asked for: the pack's actions and the frame sets it does not name, sorted
  /// by label.
  [[nodiscard]] std::vector<PetMenuAction> catalogActions();
  /// Whether the frame set "idle" has more than one frame.
  [[nodiscard]] bool hasFrames();
  /// The frame sets with more than one frame.
  [[nodiscard]] QSet<QString> availableFrameSetsNow();
  /// The colour that the user chose, for the drawing that stands in for a pet without frames.
  void setTheme(const AdaptiveColor &theme);
  void emitHearts();

  /// The user holds the pet, whose body tilts against `horizontalVelocity`, points a second; or has
  /// let go of it. To be called again with each new velocity.
  void setCarried(bool carried, double horizontalVelocity);
  /// The pet flies; or has landed.
  void setTossed(bool tossed);
  /// The pet walks, to the left for a negative direction; which way it looks stays when it ends.
  void beginGait(double direction);
  void endGait();
  [[nodiscard]] bool isCarried() const { return m_carriedActive; }
  [[nodiscard]] bool isTossed() const { return m_tossedActive; }
  [[nodiscard]] bool isGaitActive() const { return m_gaitActive; }
  /// 1 when the pet looks to the right, −1 to the left.
  [[nodiscard]] double facing() const { return m_facing; }

  /// A quiet pet does not act by itself.
  void setQuietMode(bool quiet) { m_quietMode = quiet; }
  [[nodiscard]] bool isQuiet() const { return m_quietMode; }
  /// Called when the pet wants to go for a walk, from within `advance`. A scene without a handler
  /// never does.
  void setStrollHandler(std::function<void()> handler) { m_strollHandler = std::move(handler); }
  /// The pet decides anew after this time, instead of when it would have; as when the user has
  /// chosen another behaviour mode. Nothing before `present`.
  void scheduleDirector(Duration after);
  /// The state of the scene, as the director is told.
  [[nodiscard]] BehaviorContext directorContext() const;
  /// Carries out a gesture; dropped while another one runs, and before `present`.
  void perform(ProceduralGesture gesture);
  /// What the pet did last of its own accord: a gesture, a frame set, or "stroll".
  [[nodiscard]] const std::optional<QString> &lastAutonomous() const { return m_lastAutonomous; }

  /// Opacity of the sprite, kept between `faintest` and 1.
  void setOpacity(double opacity);
  [[nodiscard]] double opacity() const { return m_opacity; }
  /// A pet that is fainter could not be found again.
  static constexpr double faintest = 0.15;

  [[nodiscard]] QSizeF size() const { return m_size; }
  /// A size of its own for each view; the pet is fitted anew and put at rest.
  void setSize(QSizeF size);
  [[nodiscard]] const QString &mood() const { return m_mood; }
  [[nodiscard]] const std::optional<QString> &stickyLoopState() const { return m_stickyLoopState; }
  /// Whether a one-shot is playing.
  [[nodiscard]] bool isPerforming() const;
  /// When the last reaction or walk of its own began; nothing before the first.
  [[nodiscard]] std::optional<Instant> lastPerformanceAt() const { return m_lastPerformanceAt; }
  /// Where `lifeNode` rests.
  [[nodiscard]] QPointF lifeBasePosition() const { return m_lifeBasePosition; }

  /// For painters and tests.
  [[nodiscard]] const Node &root() const { return *m_stage.root(); }
  [[nodiscard]] const Node &lifeNode() const { return *m_lifeNode; }
  [[nodiscard]] const Node &breathNode() const { return *m_breathNode; }
  /// Null before `present`.
  [[nodiscard]] const Node *pet() const { return m_pet.get(); }

  /// How long after `present` the pet acts by itself for the first time.
  static constexpr Duration firstDecision = std::chrono::seconds(30);

  /// The keys of the actions on the nodes.
  struct Keys {
    static const QString loop;            ///< On `pet`: the repeating frame animation.
    static const QString oneshot;         ///< On `pet`: frames played once, then back to the loop.
    static const QString director;        ///< On the root: the wait before the next decision.
    static const QString lifeBreath;      ///< On `breathNode`.
    static const QString lifeBob;         ///< On `lifeNode`.
    static const QString lifeSway;        ///< On `lifeNode`.
    static const QString lifeUpright;     ///< On `lifeNode`: the way back from any tilt.
    static const QString lifeGesture;     ///< On `lifeNode`, or `breathNode` for perk and stretch.
    static const QString lifeCarry;       ///< On `lifeNode`: the tilt while carried.
    static const QString lifeCarrySquash; ///< On `breathNode`: the squash while carried.
    static const QString lifeDizzy;       ///< On `lifeNode`: the wobble of a flight without frames.
    static const QString
        lifeUnsquash; ///< On `breathNode`: the landing, and the way back to full height.
    static const QString lifeGait;     ///< On `lifeNode`: the hops of a walk without frames.
    static const QString lifeGaitLean; ///< On `lifeNode`: the lean of a walk without frames.
    static const QString lifeFacing;   ///< On `lifeNode`: turning round.
    static const QString moodSquash;   ///< On `pet`.
  };

private:
  [[nodiscard]] std::optional<PetPack> currentPack() const;
  [[nodiscard]] QString loopState();
  /// Brings the stage to the present, and takes up what was started since.
  void catchUp();
  /// Of the resting loop; nothing when it has none.
  [[nodiscard]] std::optional<SpriteFrame> firstFrame();
  /// That frame, or a drawing.
  [[nodiscard]] SpriteFrame firstPicture();
  [[nodiscard]] static bool isLoop(const std::optional<PetPack> &pack, const QString &kind,
                                   const QString &state);
  void stopFrames();
  void playLoop();
  void repeatFrames(const Action::Frames &frames, Duration each);
  void repeatFrames(const Action::Frames &frames);
  /// Repeats the frame set that fits the hints. False when the pack has none.
  bool playSemanticLoop(const QStringList &hints);
  void applyNodeSize();
  /// Puts `lifeNode` where it rests; what moves it goes on from there.
  void putInPlace();
  void startLife();
  void startBreath(const PetPack::MotionProfile &motion, double period);
  void startBob(const PetPack::MotionProfile &motion, double period);
  void startSway(const PetPack::MotionProfile &motion, double period);
  /// Keeps a body that is held, thrown or walking in its pose while life begins anew.
  void holdOn();
  [[nodiscard]] bool isTired() const;
  void standUpright(double overSeconds, Arc arc = Arc::shortest);
  /// Ends a gesture of `lifeNode` and what it has done to its place.
  void dropGesture();
  void hop();
  void swayOnce();
  void gestureOfBreath(const Action &movement);
  void carry(double tilt);
  void land();
  void walkWithoutFrames();
  void directorTick();
  void carryOut(const BehaviorDecision::Move &move);
  void emitHeart(int index);

  QSizeF m_size;
  PetFiles m_files;
  MorvoSprites *m_sprites;
  Setting m_setting;
  Clock *m_clock;
  RandomSource *m_random;
  Stage m_stage;
  std::shared_ptr<Node> m_lifeNode = std::make_shared<Node>();
  std::shared_ptr<Node> m_breathNode = std::make_shared<Node>();
  std::shared_ptr<Node> m_pet;
  QPointF m_lifeBasePosition;
  QString m_mood;
  std::optional<QString> m_stickyLoopState;
  std::optional<Instant> m_presentedAt;
  std::optional<Instant> m_lastPerformanceAt;
  std::optional<QString> m_lastAutonomous;
  std::function<void()> m_strollHandler;
  double m_opacity = 1;
  double m_facing = 1;
  /// The gesture of `lifeNode` moves it.
  bool m_gestureHops = false;
  bool m_quietMode = false;
  bool m_gaitActive = false;
  bool m_carriedActive = false;
  bool m_tossedActive = false;
  AdaptiveColor m_theme = MorvoTheme::presets().front().color;
};

} // namespace morvo
