#pragma once

#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <system_error>

namespace testing_support {

/// Lays off the rights of root while it lives: permissions bind root's tests too.
class Unprivileged {
 public:
  Unprivileged() : m_user(::geteuid()) {
    constexpr uid_t kNobody = 65534;
    if (m_user == 0 && ::seteuid(kNobody) != 0) {
      throw std::system_error(errno, std::generic_category(), "seteuid");
    }
  }
  ~Unprivileged() {
    if (::geteuid() != m_user && ::seteuid(m_user) != 0) std::terminate();
  }
  Unprivileged(const Unprivileged&) = delete;
  Unprivileged& operator=(const Unprivileged&) = delete;

 private:
  uid_t m_user;
};

}  // namespace testing_support
