#pragma once

#include "monitor/HookContext.h"
#include "pet/PetFiles.h"
#include "platform/Setting.h"

/// Environment variables that turn a launch into a one-shot job.
namespace morvo::EntryModes {

/// What the modes work on.
struct Ground {
  HookContext hooks;
  PetFiles files;
  Setting setting;
};

/// Whether the environment asks for a mode.
[[nodiscard]] bool isMeant(const Environment &environment);

/// Whether the environment asks for a mode that draws windows' content, and so needs a QApplication
/// instead of a QCoreApplication. It still needs no desktop: the offscreen platform serves.
[[nodiscard]] bool needsApplication(const Environment &environment);

/// Runs the first mode that the environment asks for. True when one was taken: the process then
/// ends, and nothing else of the start happens. Messages go to standard error. Needs no desktop.
[[nodiscard]] bool take(const Ground &ground);

} // namespace morvo::EntryModes
