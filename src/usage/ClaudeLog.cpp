#include "usage/ClaudeLog.h"

#include <algorithm>

namespace morvo {

bool ClaudeLog::knows(const FileIdentity &identity, WallTime since) const {
  return m_identity == identity && m_since <= since;
}

bool ClaudeLog::canContinue(const FileIdentity &identity, WallTime since) const {
  return m_identity.isSameFile(identity) && identity.size > m_identity.size && m_since <= since;
}

std::int64_t ClaudeLog::bytesMissing(const FileIdentity &identity, WallTime since) const {
  return canContinue(identity, since) ? identity.size - m_place.offset : identity.size;
}

void ClaudeLog::update(const std::string &path, WallTime since, Tools &tools,
                       const std::stop_token &stop) {
  const auto log = OpenLog::at(path);
  if (!log ||
      !(canContinue(log->identity(), since) && log->fingerprint(m_place.offset) == m_fingerprint)) {
    *this = {};
  }
  if (log && !readOn(*log, since, tools, stop)) {
    *this = {};
  }
}

bool ClaudeLog::readOn(const OpenLog &log, WallTime since, Tools &tools,
                       const std::stop_token &stop) {
  m_unfinished.reset();
  const auto place = tools.lines.read(
      log, m_place,
      [this, since, &tools](std::string_view line, bool isWhole) {
        const auto event = tools.line.event(line);
        if (event && event->ts >= since) {
          if (isWhole) {
            m_events.add(*event);
          } else {
            m_unfinished = event;
          }
        }
      },
      stop);
  const auto fingerprint = place ? log.fingerprint(place->offset) : std::nullopt;
  if (!fingerprint) {
    return false;
  }
  m_events.dropBefore(since);
  m_identity = log.identity();
  m_place = *place;
  m_fingerprint = *fingerprint;
  m_since = since;
  m_oldest = WallTime::max();
  for (const TokenEvent event : m_events) {
    m_oldest = std::min(m_oldest, event.ts);
  }
  return true;
}

void ClaudeLog::append(WallTime since, TokenEvents &events) const {
  const auto isRecent = [since](const TokenEvent &event) { return event.ts >= since; };
  if (m_oldest >= since) {
    events.append(m_events);
  } else {
    for (const TokenEvent event : m_events) {
      if (isRecent(event)) {
        events.add(event);
      }
    }
  }
  if (m_unfinished && isRecent(*m_unfinished)) {
    events.add(*m_unfinished);
  }
}

} // namespace morvo
