#include "app/EntryModes.h"

#include "monitor/ConnectSelfTest.h"

namespace morvo::EntryModes {

bool take(const HookContext &context) {
  if (context.environment.isOne(QStringLiteral("MORVO_CONNECT_TEST"))) {
    ConnectSelfTest::run(context);
    return true;
  }
  return false;
}

} // namespace morvo::EntryModes
