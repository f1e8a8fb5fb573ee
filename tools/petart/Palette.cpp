#include "Palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

namespace morvo::Palette {
namespace {

constexpr std::size_t mostColors = 136;
constexpr int channels = 4;
using Channels = std::array<double, channels>;

struct Tone {
  QRgb rgb = 0; ///< Premultiplied.
  double weight = 0;
};

/// The transparent ground has an entry of its own.
constexpr QRgb nothing = 0;

int channel(QRgb rgb, int index) { return static_cast<int>((rgb >> (8 * index)) & 0xff); }

/// Tones that will share one colour.
class Box {
public:
  explicit Box(std::span<Tone> tones) : m_tones(tones) {
    Channels squares{};
    for (const Tone &tone : tones) {
      m_weight += tone.weight;
      for (int index = 0; index < channels; ++index) {
        const double value = channel(tone.rgb, index);
        m_mean[index] += tone.weight * value;
        squares[index] += tone.weight * value * value;
      }
    }
    for (int index = 0; index < channels; ++index) {
      m_mean[index] /= m_weight;
      const double error = squares[index] - m_weight * m_mean[index] * m_mean[index];
      if (error > m_error) {
        m_error = error;
        m_widest = index;
      }
    }
  }

  /// Summed square distance of its tones from their mean along the widest channel.
  [[nodiscard]] double error() const { return m_error; }
  [[nodiscard]] std::span<const Tone> tones() const { return m_tones; }

  [[nodiscard]] std::pair<Box, Box> halves() const {
    const auto middle = std::ranges::partition(m_tones, [this](const Tone &tone) {
      return channel(tone.rgb, m_widest) <= m_mean[m_widest];
    });
    const auto first = static_cast<std::size_t>(middle.begin() - m_tones.begin());
    return {Box(m_tones.first(first)), Box(m_tones.subspan(first))};
  }

  [[nodiscard]] QRgb color() const {
    std::array<int, channels> mean{};
    for (int index = 0; index < channels; ++index) {
      mean[index] = static_cast<int>(std::lround(m_mean[index]));
    }
    return qUnpremultiply(qRgba(mean[2], mean[1], mean[0], mean[3]));
  }

private:
  std::span<Tone> m_tones;
  Channels m_mean{};
  double m_weight = 0;
  double m_error = 0;
  int m_widest = 0;
};

int distance(QRgb first, QRgb second) {
  int sum = 0;
  for (int index = 0; index < channels; ++index) {
    sum += std::abs(channel(first, index) - channel(second, index));
  }
  return sum;
}

/// How much a wrong colour would show here: much where the picture is smooth and a step would be
/// seen as a band, little on an edge.
std::uint32_t importance(QRgb rgb, QRgb left, QRgb above) {
  constexpr int smooth = 14;
  constexpr std::uint32_t onSurface = 16;
  return distance(rgb, left) + distance(rgb, above) <= smooth ? onSurface : 1;
}

std::vector<Tone> tonesOf(const QImage &picture) {
  std::unordered_map<QRgb, std::uint32_t> weights;
  weights.reserve(1U << 16U);
  const auto lineAt = [&picture](int y) {
    return reinterpret_cast<const QRgb *>(picture.constScanLine(std::max(y, 0)));
  };
  for (int y = 0; y < picture.height(); ++y) {
    const QRgb *line = lineAt(y);
    const QRgb *above = lineAt(y - 1);
    for (int x = 0; x < picture.width(); ++x) {
      if (line[x] != nothing) {
        weights[line[x]] += importance(line[x], line[std::max(x - 1, 0)], above[x]);
      }
    }
  }
  std::vector<Tone> tones;
  tones.reserve(weights.size());
  for (const auto &[rgb, weight] : weights) {
    tones.push_back({rgb, static_cast<double>(weight)});
  }
  // The order of a hash table is nobody's promise; the result must not hang on it.
  std::ranges::sort(tones, {}, &Tone::rgb);
  return tones;
}

std::vector<Box> boxesOf(std::span<Tone> tones) {
  std::vector<Box> boxes;
  if (tones.empty()) {
    return boxes;
  }
  boxes.emplace_back(tones);
  while (boxes.size() < mostColors - 1) {
    const auto worst = std::ranges::max_element(boxes, {}, &Box::error);
    if (worst->error() < 1) {
      break;
    }
    const auto [first, second] = worst->halves();
    *worst = first;
    boxes.push_back(second);
  }
  return boxes;
}

} // namespace

QImage reduced(const QImage &picture) {
  const QImage source = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  std::vector<Tone> tones = tonesOf(source);
  const std::vector<Box> boxes = boxesOf(tones);
  QList<QRgb> colors{nothing};
  std::unordered_map<QRgb, uchar> places{{nothing, 0}};
  places.reserve(tones.size() + 1);
  for (const Box &box : boxes) {
    for (const Tone &tone : box.tones()) {
      places.emplace(tone.rgb, static_cast<uchar>(colors.size()));
    }
    colors.append(box.color());
  }
  QImage result(source.size(), QImage::Format_Indexed8);
  result.setColorTable(colors);
  for (int y = 0; y < source.height(); ++y) {
    const auto *from = reinterpret_cast<const QRgb *>(source.constScanLine(y));
    uchar *to = result.scanLine(y);
    QRgb last = nothing;
    uchar place = 0;
    for (int x = 0; x < source.width(); ++x) {
      if (from[x] != last) {
        last = from[x];
        place = places.at(last);
      }
      to[x] = place;
    }
  }
  return result;
}

} // namespace morvo::Palette
