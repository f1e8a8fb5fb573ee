#pragma once

#include "pet/PetFiles.h"
#include "platform/Setting.h"

#include <QSize>
#include <QStringList>

/// One picture of the pet's stage without a display, for `MORVO_SCENE`.
namespace morvo::SceneMode {

/// The stage, in pixels too.
inline constexpr QSize stageSize(150, 140);

/// `fields` are mood, output path and perhaps the seconds that pass before the picture is taken.
/// `MORVO_PERSONA_ID` names the pet. The moods "celebrate" and "alert" play these actions as well.
/// Tells on standard error that the picture was written; it does so too when only the writing of
/// the file failed.
void run(const QStringList &fields, const PetFiles &files, const Setting &setting);

} // namespace morvo::SceneMode
