#pragma once

namespace morvo {

/// Follows the brackets of JSON byte by byte, passing over those in texts. It tells kinds of
/// brackets apart as little as it checks anything else.
class JsonNesting {
public:
  void take(char byte) {
    if (m_isEscape) {
      m_isEscape = false;
    } else if (m_isText) {
      m_isEscape = byte == '\\';
      m_isText = byte != '"';
    } else if (byte == '"') {
      m_isText = true;
    } else if (byte == '{' || byte == '[') {
      ++m_depth;
    } else if (byte == '}' || byte == ']') {
      --m_depth;
    }
  }

  /// Brackets that are open.
  [[nodiscard]] long depth() const { return m_depth; }
  [[nodiscard]] bool isInText() const { return m_isText; }
  /// Whether a byte other than a quotation mark or a backslash changes nothing.
  [[nodiscard]] bool passesOver() const { return m_isText && !m_isEscape; }

  /// The same between texts, where spaces do not count.
  [[nodiscard]] static bool isSpace(char byte) {
    return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
  }

private:
  long m_depth = 0;
  bool m_isText = false;
  bool m_isEscape = false;
};

} // namespace morvo
