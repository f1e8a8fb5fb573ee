#include "usage/LogLine.h"

#include "usage/TextSearch.h"

#include <cstring>

void morvo::LogLine::eachMarked(std::string_view text, std::string_view marker,
                                const std::function<void(std::string_view)> &take) {
  const char *from = text.data();
  const char *const limit = from + text.size();
  while (from < limit) {
    const char *const hit = TextSearch::find({from, limit}, marker);
    if (hit == nullptr) {
      return;
    }
    const auto *const before =
        static_cast<const char *>(::memrchr(from, '\n', static_cast<std::size_t>(hit - from)));
    const auto *const after =
        static_cast<const char *>(std::memchr(hit, '\n', static_cast<std::size_t>(limit - hit)));
    const char *const begin = before == nullptr ? from : before + 1;
    const char *const end = after == nullptr ? limit : after;
    take({begin, end});
    from = end + 1;
  }
}
