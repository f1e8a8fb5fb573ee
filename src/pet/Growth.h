#pragma once

#include "pet/GrowthState.h"
#include "platform/Setting.h"

/// The growth card's figures.
namespace morvo::Growth {

/// Forgets, once in the life of the settings, the experience of an earlier scheme.
void migrateResetIfNeeded(const Setting &setting);

/// The card as stored. The day's goal stands at nothing done of 3, whatever `dailyDone` is.
[[nodiscard]] GrowthState state(const Setting &setting, int dailyDone);

} // namespace morvo::Growth
