#pragma once

#include "monitor/HookContext.h"

/// The self-test of the Claude connector, for `MORVO_CONNECT_TEST`.
namespace morvo::ConnectSelfTest {

/// Connects twice and disconnects, in the user's settings file or that of `MORVO_SETTINGS_PATH`,
/// and tells each result on standard error with the tag [CONNECT]. A failing step adds a line of
/// its own and the test goes on. Our event hooks are gone afterwards.
void run(const HookContext &context);

} // namespace morvo::ConnectSelfTest
