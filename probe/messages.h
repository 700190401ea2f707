#pragma once

#include <atomic>
#include <cstdio>
#include <mutex>
#include <string>
#include <vector>

#include "device/probe_api/records.h"

enum class MSG_KIND { LOG, WARNING, ERROR };

// The library's texts for its user. They are queued where they arise and delivered by Flush, which is called without
// any of the library's locks, so that a receiver may call the library.
class CMessages {
public:
  ~CMessages();
  void SetCallback(MSG_KIND Kind, VNODE_TEXT_CALLBACK pfCallback);
  // An empty path ends logging. False when the file cannot be written.
  bool SetLogFile(const std::string& sPath);

  void Add(MSG_KIND Kind, std::string sText);
  // For the log file alone.
  void Trace(const char* sText);
  void Flush();

private:
  struct ITEM {
    MSG_KIND Kind;
    std::string sText;
  };
  void WriteToFile(const char* sKind, const char* sText);

  std::mutex m_Mutex;
  std::vector<ITEM> m_Queue;
  VNODE_TEXT_CALLBACK m_apfCallback[3] = {};
  std::FILE* m_pFile = nullptr;
  std::atomic<bool> m_bHasFile{false};
};
