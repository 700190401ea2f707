#pragma once
// A full disk.

#include <sys/resource.h>

#include <csignal>

// No file may grow while the limit stands.
class CFileSizeLimit {
public:
  CFileSizeLimit() {
    getrlimit(RLIMIT_FSIZE, &m_Old);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit None{0, m_Old.rlim_max};
    setrlimit(RLIMIT_FSIZE, &None);
  }
  ~CFileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_Old); }

private:
  rlimit m_Old{};
};
