#include "app/EntryModes.h"

#include "app/MenubarMode.h"
#include "app/RenderMode.h"
#include "app/SceneMode.h"
#include "app/UsageModes.h"
#include "base/Diagnostics.h"
#include "monitor/ConnectSelfTest.h"
#include "pet/PetSpritesDebug.h"

#include <array>

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

} // namespace

bool needsApplication(const Environment &environment) {
  return environment.nonEmpty(QStringLiteral("MORVO_RENDER")).has_value();
}

bool take(const Ground &ground) {
  for (const Mode &mode : modes) {
    const auto value = ground.hooks.environment.value(mode.variable.toString());
    if (value && mode.isMeant(*value)) {
      mode.run(ground, *value);
      return true;
    }
  }
  return false;
}

} // namespace morvo::EntryModes
