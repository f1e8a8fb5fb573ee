#include "companion/LinePack.h"

#include <QJsonArray>

#include <array>
#include <utility>

namespace morvo {
namespace {

using List = QStringList LinePack::*;

constexpr std::array<std::pair<LineBucket, List>, 7> buckets{{
    {LineBucket::done, &LinePack::done},
    {LineBucket::needsInput, &LinePack::needsInput},
    {LineBucket::petted, &LinePack::petted},
    {LineBucket::digest, &LinePack::digest},
    {LineBucket::usage, &LinePack::usage},
    {LineBucket::reflect, &LinePack::reflect},
    {LineBucket::rest, &LinePack::rest},
}};

std::optional<QStringList> texts(const QJsonValue &value) {
  if (!value.isArray()) {
    return std::nullopt;
  }
  QStringList lines;
  for (const auto &element : value.toArray()) {
    if (!element.isString()) {
      return std::nullopt;
    }
    lines.append(element.toString());
  }
  return lines;
}

} // namespace

const QStringList &LinePack::lines(LineBucket bucket) const {
  for (const auto &[known, list] : buckets) {
    if (known == bucket) {
      return this->*list;
    }
  }
  Q_UNREACHABLE();
}

bool LinePack::isUsable() const {
  return !done.isEmpty() || !needsInput.isEmpty() || !petted.isEmpty();
}

std::optional<LinePack> linePackFromJson(const QJsonObject &json) {
  LinePack pack;
  for (const auto &[bucket, list] : buckets) {
    auto lines = texts(json.value(rawValue(bucket)));
    if (!lines) {
      return std::nullopt;
    }
    pack.*list = *std::move(lines);
  }
  return pack;
}

QJsonObject toJson(const LinePack &pack) {
  QJsonObject json;
  for (const auto &[bucket, list] : buckets) {
    json.insert(rawValue(bucket), QJsonArray::fromStringList(pack.*list));
  }
  return json;
}

} // namespace morvo
