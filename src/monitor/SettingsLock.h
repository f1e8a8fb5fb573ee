#pragma once

#include "platform/HomeFolder.h"

#include <chrono>

namespace morvo {

/// Keeps other processes and threads of the program from changing agents' files while it lives: a
/// lock on `~/.morvo/.lock`. Never taken twice by one thread at a time.
///
/// Only a courtesy among our own: where it cannot be had (no folder to put the file in, a holder
/// that hangs) the work goes on without it, since an agent must always be disconnectable. Changes
/// by others are noticed then by `SharedFile::change`, as those of the agents themselves are.
class SettingsLock {
public:
  /// How long another holder is waited for.
  static constexpr std::chrono::milliseconds patience{2000};

  /// Waits for another holder.
  explicit SettingsLock(const HomeFolder &home);
  SettingsLock(const SettingsLock &) = delete;
  SettingsLock &operator=(const SettingsLock &) = delete;
  ~SettingsLock();

private:
  int m_descriptor;
};

} // namespace morvo
