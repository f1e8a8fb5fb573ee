#include "usage/GenericUsageReader.h"

#include "base/Json.h"
#include "usage/JsonArrayText.h"
#include "usage/LogFile.h"
#include "usage/LogTime.h"
#include "usage/MarkedLines.h"
#include "usage/TokenCount.h"
#include "usage/TokenPrice.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <optional>
#include <simdjson.h>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace morvo {
namespace {

/// No more files of a folder are read.
constexpr std::size_t mostFiles = 40;
/// A shorter line holds no record.
constexpr std::size_t shortestLine = 9;

constexpr std::array<std::string_view, 2> extensions{"json", "jsonl"};

using Tokens = GenericUsageReader::Tokens;

/// What a value counts: a number without its fraction, or what a text of digits says.
std::int64_t countIn(const QJsonObject &object, QLatin1StringView key) {
  const QJsonValue value = object.value(key);
  if (value.isString()) {
    return TokenCount::fromDecimal(value.toString().toStdString()).value_or(0);
  }
  const std::int64_t whole = TokenCount::fromWhole(value);
  return whole != 0 ? whole : TokenCount::fromReal(value.toDouble());
}

std::int64_t sumOf(const QJsonObject &object, std::initializer_list<const char *> keys) {
  std::int64_t sum = 0;
  for (const char *const key : keys) {
    sum = TokenCount::sum(sum, countIn(object, QLatin1StringView(key)));
  }
  return sum;
}

std::int64_t sentAndReceived(const QJsonObject &object) {
  return sumOf(object, {"input_tokens", "prompt_tokens", "inputTokens", "output_tokens",
                        "completion_tokens", "outputTokens"});
}

Tokens usageTokens(const QJsonObject &usage) {
  const std::int64_t billable =
      TokenCount::sum(sentAndReceived(usage),
                      sumOf(usage, {"cache_creation_input_tokens", "cache_creation_tokens"}));
  const std::int64_t read = sumOf(usage, {"cache_read_input_tokens", "cached_input_tokens"});
  if (billable >= 1) {
    return {.billable = billable, .cacheRead = read};
  }
  const std::int64_t total = sumOf(usage, {"total_tokens"});
  return total >= 1 ? Tokens{.billable = total, .cacheRead = read} : Tokens{.empty = true};
}

/// The sums of one file.
struct Tally {
  std::int64_t billable = 0;
  std::int64_t cacheRead = 0;

  void add(const QJsonObject &record) {
    const Tokens tokens = GenericUsageReader::extractTokens(record);
    billable = TokenCount::sum(billable, tokens.billable);
    cacheRead = TokenCount::sum(cacheRead, tokens.cacheRead);
  }
};

/// Whether the record may count something: the names of all counts have this in common, unless they
/// are written with escapes.
bool mayCount(QByteArrayView record) { return record.contains("okens") || record.contains("\\u"); }

/// The sums of a file that is a JSON array of objects; nothing for any other file.
std::optional<Tally> tallyOfArray(const OpenLog &log, const std::stop_token &stop) {
  Tally tally;
  JsonArrayText array([&tally](const QByteArray &text) {
    const auto record = Json::parseObject(text);
    if (record) {
      tally.add(*record);
    }
    return record.has_value();
  });
  std::vector<char> block(MarkedLines::standardBlock);
  for (std::int64_t position = 0; position < log.identity().size;) {
    const auto count = log.read(position, block.data(), block.size());
    if (!count || *count == 0 || stop.stop_requested() || !array.feed({block.data(), *count})) {
      return std::nullopt;
    }
    position += static_cast<std::int64_t>(*count);
  }
  return array.isComplete() ? std::optional(tally) : std::nullopt;
}

/// The sums of the records that are lines; none when any of the file is no UTF-8. Nothing when
/// reading fails.
std::optional<Tally> tallyOfLines(const OpenLog &log, const std::stop_token &stop) {
  Tally tally;
  bool isText = true;
  // Every line holds the empty marker.
  MarkedLines lines({});
  const auto add = [&tally, &isText](std::string_view line, bool /*isWhole*/) {
    isText = isText && simdjson::validate_utf8(line);
    if (isText && line.size() >= shortestLine && mayCount(line)) {
      if (const auto record = Json::parseObject(
              QByteArray::fromRawData(line.data(), static_cast<qsizetype>(line.size())))) {
        tally.add(*record);
      }
    }
  };
  const auto end = lines.read(log, {}, add, stop);
  if (!end) {
    return std::nullopt;
  }
  return isText ? tally : Tally();
}

/// The sums of a file; nothing when it cannot be read.
std::optional<Tally> tallyOf(const LogFile &file, const std::stop_token &stop) {
  const auto log = OpenLog::at(file.path);
  if (!log) {
    return std::nullopt;
  }
  const auto ofArray =
      file.path.ends_with(".json") ? tallyOfArray(*log, stop) : std::optional<Tally>();
  return ofArray ? ofArray : tallyOfLines(*log, stop);
}

/// The newest files first; of several of one time the first by name.
void keepNewest(std::vector<LogFile> &files) {
  const auto middle =
      files.begin() + static_cast<std::ptrdiff_t>(std::min(mostFiles, files.size()));
  std::ranges::partial_sort(files, middle, [](const LogFile &left, const LogFile &right) {
    return std::tie(right.identity.modified, left.path) <
           std::tie(left.identity.modified, right.path);
  });
  files.erase(middle, files.end());
}

} // namespace

Tokens GenericUsageReader::extractTokens(const QJsonObject &record) {
  const QJsonObject payload = record.value(u"payload").toObject();
  for (const QJsonValue &usage :
       {record.value(u"usage"), record.value(u"message").toObject().value(u"usage"),
        payload.value(u"usage")}) {
    if (usage.isObject()) {
      return usageTokens(usage.toObject());
    }
  }
  const QJsonObject totals =
      payload.value(u"info").toObject().value(u"total_token_usage").toObject();
  if (const std::int64_t total = sumOf(totals, {"total_tokens"}); total > 0) {
    const std::int64_t cached = sumOf(totals, {"cached_input_tokens"});
    return {.billable = std::max<std::int64_t>(TokenCount::difference(total, cached), 0),
            .cacheRead = cached};
  }
  if (const std::int64_t billable = sentAndReceived(record); billable >= 1) {
    return {.billable = billable};
  }
  const std::int64_t total =
      std::max<std::int64_t>(sumOf(record, {"total_tokens", "totalTokens"}), 0);
  return {.billable = total, .empty = total < 1};
}

GenericUsageReader::GenericUsageReader(HomeFolder home, const Clock &clock)
    : m_home(std::move(home)), m_clock(&clock) {}

TokenEvents GenericUsageReader::events(const QString &under, double sinceHours,
                                       const QString &modelHint, const std::stop_token &stop) {
  const std::scoped_lock lock(m_mutex);
  auto files =
      LogFile::changedSince(QFile::encodeName(m_home.file(under)).toStdString(), extensions,
                            LogTime::hoursBefore(m_clock->now(), sinceHours), stop);
  keepNewest(files);
  const TokenPrice price = TokenPrice::ofModel(modelHint.toStdString());
  std::map<std::string, Sums> &known = m_memory[under];
  std::map<std::string, Sums> present;
  TokenEvents events;
  for (const LogFile &file : files) {
    const auto before = known.find(file.path);
    std::optional<Sums> sums;
    if (before != known.end() && before->second.identity == file.identity) {
      sums = before->second;
    } else if (const auto tally = tallyOf(file, stop)) {
      sums = {
          .identity = file.identity, .billable = tally->billable, .cacheRead = tally->cacheRead};
    }
    if (stop.stop_requested()) {
      return events;
    }
    if (!sums) {
      // What cannot be read now is tried again the next time.
      continue;
    }
    present.insert_or_assign(file.path, *sums);
    if (sums->billable > 0) {
      events.add({.ts = file.identity.modifiedAt(),
                  .billable = sums->billable,
                  .cacheRead = sums->cacheRead,
                  .cost = price.ofMixed(sums->billable),
                  .burnable = false});
    }
  }
  known = std::move(present);
  return events;
}

} // namespace morvo
