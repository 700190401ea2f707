#include "process.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>

#include <csignal>
#include <cstdio>
#include <sstream>

bool CProcess::Start(const std::vector<std::string>& Arguments) {
  std::vector<char*> Pointers;
  for (const std::string& sArgument : Arguments) Pointers.push_back(const_cast<char*>(sArgument.c_str()));
  Pointers.push_back(nullptr);
  posix_spawn_file_actions_t Actions;
  posix_spawn_file_actions_init(&Actions);
  posix_spawn_file_actions_addopen(&Actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&Actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&Actions, 2, "/dev/null", O_WRONLY, 0);
  const bool bStarted = posix_spawnp(&m_Pid, Pointers[0], &Actions, nullptr, Pointers.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&Actions);
  if (!bStarted) m_Pid = -1;
  return bStarted;
}

bool CProcess::IsRunning() {
  if (m_Pid < 0 || waitpid(m_Pid, nullptr, WNOHANG) == 0) return m_Pid >= 0;
  m_Pid = -1;
  return false;
}

void CProcess::Kill() {
  if (m_Pid < 0) return;
  kill(m_Pid, SIGKILL);
  waitpid(m_Pid, nullptr, 0);
  m_Pid = -1;
}

U32 AddressOf(const std::string& sElf, const std::string& sSymbol) {
  FILE* pPipe = popen(("readelf -sW '" + sElf + "'").c_str(), "r");
  char acLine[512];
  U32 Address = INVALID_ADDR;
  while (pPipe && std::fgets(acLine, sizeof(acLine), pPipe)) {
    std::istringstream Line(acLine);
    std::string sNumber, sValue, sField, sName;
    Line >> sNumber >> sValue;
    while (Line >> sField) sName = sField;
    if (sName == sSymbol) Address = static_cast<U32>(std::stoul(sValue, nullptr, 16)) & ~1u;
  }
  if (pPipe) pclose(pPipe);
  EXPECT_NE(Address, INVALID_ADDR) << sSymbol << " in " << sElf;
  return Address;
}
