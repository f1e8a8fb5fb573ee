#pragma once

#include "usage/TokenEvent.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <vector>

namespace morvo {

/// A list of token events that takes half the memory: a week holds hundreds of thousands, nearly
/// all of whole seconds and of counts that fit 32 bits. The others cost more and come back the
/// same.
class TokenEvents {
public:
  class Iterator {
  public:
    using value_type = TokenEvent;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    Iterator(const TokenEvents &events, std::size_t index) : m_events(&events), m_index(index) {}
    TokenEvent operator*() const { return (*m_events)[m_index]; }
    Iterator &operator++() {
      ++m_index;
      return *this;
    }
    Iterator operator++(int) {
      Iterator before = *this;
      ++m_index;
      return before;
    }
    bool operator==(const Iterator &) const = default;

  private:
    const TokenEvents *m_events = nullptr;
    std::size_t m_index = 0;
  };

  TokenEvents() = default;
  TokenEvents(std::initializer_list<TokenEvent> events);

  [[nodiscard]] bool empty() const { return m_events.empty(); }
  [[nodiscard]] std::size_t size() const { return m_events.size(); }
  [[nodiscard]] TokenEvent operator[](std::size_t index) const;
  [[nodiscard]] Iterator begin() const { return {*this, 0}; }
  [[nodiscard]] Iterator end() const { return {*this, size()}; }

  void reserve(std::size_t count) { m_events.reserve(count); }
  void add(const TokenEvent &event);
  void append(const TokenEvents &others);
  /// Drops the events before that time, and the room that is not needed.
  void dropBefore(WallTime time);

  bool operator==(const TokenEvents &) const = default;

private:
  struct Packed {
    /// Since 1970; `isWide` for an event that stands in the other list.
    std::uint32_t seconds = 0;
    std::uint32_t billable : 31 = 0; ///< Or the place in the other list.
    std::uint32_t burnable : 1 = 0;
    std::uint32_t cacheRead = 0;
    /// A real number in two halves, which would else have to stand at a multiple of its size.
    std::array<std::uint32_t, 2> cost{};

    bool operator==(const Packed &) const = default;
  };

  std::vector<Packed> m_events;
  std::vector<TokenEvent> m_wide;
};

} // namespace morvo
