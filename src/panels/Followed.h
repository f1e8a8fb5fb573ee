#pragma once

#include <QObject>
#include <QPointer>

#include <type_traits>

/// An object of another's that one listens to, and that may be exchanged or go away.
namespace morvo::Followed {

/// Puts `next` in the place of `held`, whose signals no longer reach `follower`. False, with
/// nothing changed, when it stands there already. To listen to `next` is the caller's part.
template <typename Object>
bool replace(QPointer<Object> &held, std::type_identity_t<Object> *next, const QObject *follower) {
  if (held == next) {
    return false;
  }
  if (held != nullptr) {
    held->disconnect(follower);
  }
  held = next;
  return true;
}

} // namespace morvo::Followed
