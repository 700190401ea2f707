#pragma once

#include "probe/gdb/gdb_target.h"

class CGdbTarget::CPause {
public:
  explicit CPause(CGdbTarget& Target);
  ~CPause();
  CPause(const CPause&) = delete;
  CPause& operator=(const CPause&) = delete;
  // False: the core could not be stopped.
  explicit operator bool() const { return m_bStopped; }

private:
  CGdbTarget& m_Target;
  bool m_bStopped = false;
  bool m_bResume = false;
};
