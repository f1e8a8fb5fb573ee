#pragma once

#include "pet/PetFiles.h"

#include <QStringList>

/// All tray icons of a pet side by side, without a display, for `MORVO_MENUBAR`.
namespace morvo::MenubarMode {

/// `fields` are the pet's id and the output path. Tells on standard error how many icons there are;
/// it does so too when only the writing of the file failed.
void run(const QStringList &fields, const PetFiles &files);

} // namespace morvo::MenubarMode
