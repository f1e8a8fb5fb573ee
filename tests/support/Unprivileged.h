#pragma once

#include <unistd.h>

namespace morvo::test {

/// While it lives, files closed to everybody are closed to this process too, even when a
/// privileged user runs the tests.
class Unprivileged {
public:
  Unprivileged() {
    if (m_user == 0) {
      m_works = ::seteuid(nobody) == 0;
    }
  }
  Unprivileged(const Unprivileged &) = delete;
  Unprivileged &operator=(const Unprivileged &) = delete;
  ~Unprivileged() { static_cast<void>(::seteuid(m_user)); }

  [[nodiscard]] bool works() const { return m_works; }

private:
  static constexpr uid_t nobody = 65534;
  uid_t m_user = ::geteuid();
  bool m_works = true;
};

} // namespace morvo::test
