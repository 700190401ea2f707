#pragma once
// Programs that a test runs and ends.

#include <sys/types.h>

#include <string>
#include <vector>

#include "base/types.h"

// A child process; killed when this object goes.
class CProcess {
public:
  CProcess() = default;
  ~CProcess() { Kill(); }
  CProcess(const CProcess&) = delete;
  CProcess& operator=(const CProcess&) = delete;

  // Without input and output. False when it cannot be started.
  bool Start(const std::vector<std::string>& Arguments);
  bool IsRunning();
  void Kill();

private:
  pid_t m_Pid = -1;
};

// Value of a symbol, by readelf; fails the test when there is none. Thumb bits are taken off.
U32 AddressOf(const std::string& sElf, const std::string& sSymbol);
