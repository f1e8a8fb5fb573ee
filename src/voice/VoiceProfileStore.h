#pragma once

#include "voice/VoiceProfile.h"

#include <QStringList>

/// Where a persona's voice is kept.
namespace morvo::VoiceProfileStore {

/// The first of the files that holds a JSON object; the default voice when none does.
/// `candidates` are the places of "voice.json", the user's own first.
[[nodiscard]] VoiceProfile load(const QStringList &candidates);

} // namespace morvo::VoiceProfileStore
