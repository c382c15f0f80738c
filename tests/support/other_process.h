#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace testing_support {

/// Another process that works beside the test until this goes, or the test does, in whatever way.
class OtherProcess {
 public:
  template <class Work>
  explicit OtherProcess(const Work& work) : m_process(::fork()) {
    if (m_process != 0) return;
#ifdef __linux__
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
    work();
    ::_exit(0);
  }
  ~OtherProcess() {
    if (!IsThere()) return;
    ::kill(m_process, SIGKILL);
    ::waitpid(m_process, nullptr, 0);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;

  bool IsThere() const { return m_process > 0; }

 private:
  pid_t m_process;
};

}  // namespace testing_support
