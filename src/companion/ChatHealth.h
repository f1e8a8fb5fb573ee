#pragma once

namespace morvo {

/// The chat's status, from well to worse.
enum class ChatHealth {
  checking,
  ready,
  sending,
  serverOffline,
  sessionIssue,
  rateLimited,
  quotaExceeded,
  modelUnavailable,
};

} // namespace morvo
