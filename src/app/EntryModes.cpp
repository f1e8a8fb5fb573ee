#include "app/EntryModes.h"

#include "app/MenubarMode.h"
#include "app/RenderMode.h"
#include "app/SceneMode.h"
#include "app/UsageModes.h"
#include "base/Diagnostics.h"
#include "monitor/ConnectSelfTest.h"
#include "pet/PetSpritesDebug.h"

#include <algorithm>
#include <array>
#include <optional>

namespace morvo::EntryModes {
namespace {

/// Separates the fields of a value; a value without one is mistyped and leads to the normal start.
constexpr QChar separator = u':';

bool hasFields(const QString &value) { return value.contains(separator); }
bool isThere(const QString &value) { return !value.isEmpty(); }
bool isOne(const QString &value) { return value == u'1'; }

void renderScene(const Ground &ground, const QString &value) {
  SceneMode::run(value.split(separator), ground.files, ground.setting);
}

void reportFrames(const Ground &ground, const QString &personaId) {
  Diagnostics::line(u"FRAMES", PetSpritesDebug::report(ground.files, personaId));
}

void drawMenubar(const Ground &ground, const QString &value) {
  MenubarMode::run(value.split(separator), ground.files);
}

void renderPanel(const Ground &ground, const QString &path) { RenderMode::run(ground, path); }

void testConnecting(const Ground &ground, const QString & /*value*/) {
  ConnectSelfTest::run(ground.hooks);
}

void tellCodexLimit(const Ground &ground, const QString & /*value*/) {
  UsageModes::printCodexLimit(ground.hooks.home);
}

void scanUsage(const Ground &ground, const QString & /*value*/) {
  UsageModes::scan(ground.hooks, ground.setting);
}

struct Mode {
  QStringView variable;
  bool (*isMeant)(const QString &value) = nullptr;
  void (*run)(const Ground &ground, const QString &value) = nullptr;
};

/// In the order in which they are tried.
constexpr std::array modes{
    Mode{u"MORVO_SCENE", hasFields, renderScene},
    Mode{u"MORVO_CODEX_LIMIT", isOne, tellCodexLimit},
    Mode{u"MORVO_FRAMES", isThere, reportFrames},
    Mode{u"MORVO_MENUBAR", hasFields, drawMenubar},
    Mode{u"MORVO_RENDER", isThere, renderPanel},
    Mode{u"MORVO_CONNECT_TEST", isOne, testConnecting},
    Mode{u"MORVO_SCAN", isOne, scanUsage},
};

/// What the mode is told; nothing when it is not meant.
std::optional<QString> valueOf(const Mode &mode, const Environment &environment) {
  auto value = environment.value(mode.variable.toString());
  return value && mode.isMeant(*value) ? value : std::nullopt;
}

} // namespace

bool needsApplication(const Environment &environment) {
  return environment.nonEmpty(QStringLiteral("MORVO_RENDER")).has_value();
}

bool isMeant(const Environment &environment) {
  return std::ranges::any_of(
      modes, [&](const Mode &mode) { return valueOf(mode, environment).has_value(); });
}

bool take(const Ground &ground) {
  for (const Mode &mode : modes) {
    if (const auto value = valueOf(mode, ground.hooks.environment)) {
      mode.run(ground, *value);
      return true;
    }
  }
  return false;
}

} // namespace morvo::EntryModes
