#include "probe/messages.h"

#include <algorithm>
#include <ctime>
#include <iterator>

namespace {

constexpr size_t MAX_QUEUED_MESSAGES = 1000;
constexpr const char* KIND_TEXTS[] = {"log", "warning", "error"};

}  // namespace

CMessages::~CMessages() {
  if (m_pFile) std::fclose(m_pFile);
}

void CMessages::SetCallback(MSG_KIND Kind, VNODE_TEXT_CALLBACK pfCallback) {
  std::lock_guard Lock(m_Mutex);
  m_apfCallback[static_cast<int>(Kind)] = pfCallback;
}

bool CMessages::SetLogFile(const std::string& sPath) {
  std::lock_guard Lock(m_Mutex);
  if (m_pFile) std::fclose(m_pFile);
  m_pFile = sPath.empty() ? nullptr : std::fopen(sPath.c_str(), "a");
  m_bHasFile = m_pFile != nullptr;
  return sPath.empty() || m_pFile;
}

void CMessages::WriteToFile(const char* sKind, const char* sText) {
  if (!m_pFile) return;
  timespec Now = {};
  std::timespec_get(&Now, TIME_UTC);
  tm Parts = {};
  localtime_r(&Now.tv_sec, &Parts);
  char acTime[32];
  std::strftime(acTime, sizeof(acTime), "%H:%M:%S", &Parts);
  std::fprintf(m_pFile, "%s.%03ld %s: %s\n", acTime, Now.tv_nsec / 1'000'000, sKind, sText);
  std::fflush(m_pFile);
}

void CMessages::Add(MSG_KIND Kind, std::string sText) {
  std::lock_guard Lock(m_Mutex);
  WriteToFile(KIND_TEXTS[static_cast<int>(Kind)], sText.c_str());
  // What a target prints does not keep its errors from being heard.
  const size_t Limit = Kind == MSG_KIND::LOG ? MAX_QUEUED_MESSAGES : 2 * MAX_QUEUED_MESSAGES;
  if (m_Queue.size() < Limit) m_Queue.push_back({Kind, std::move(sText)});
}

void CMessages::Trace(const char* sText) {
  if (!m_bHasFile) return;
  std::lock_guard Lock(m_Mutex);
  WriteToFile("call", sText);
}

void CMessages::Flush() {
  std::vector<ITEM> Items;
  VNODE_TEXT_CALLBACK apfCallback[3];
  {
    std::lock_guard Lock(m_Mutex);
    if (m_Queue.empty()) return;
    Items.swap(m_Queue);
    std::copy(std::begin(m_apfCallback), std::end(m_apfCallback), apfCallback);
  }
  for (const ITEM& Item : Items) {
    if (const auto pfCallback = apfCallback[static_cast<int>(Item.Kind)]) pfCallback(Item.sText.c_str());
  }
}
