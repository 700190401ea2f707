#pragma once

#include <QString>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

// Remembers the latest actions, and ends the program with them when one takes too long.
class CSoakWatchdog {
public:
  explicit CSoakWatchdog(int LimitS);
  ~CSoakWatchdog();

  // The main thread begins an action; the one before has ended.
  void Begin(const QString& sAction);
  // Something else on the main thread, maybe within that action.
  void Note(const QString& sAction);
  // What Fail reports in addition; called on the main thread.
  void SetDetails(std::function<QString()> Details) { m_Details = std::move(Details); }
  // Ends the program with exit code 1: sWhat, the latest actions and the backtraces of all threads.
  [[noreturn]] void Fail(const QString& sWhat);

private:
  void Watch();
  void Keep(const QString& sAction);
  [[noreturn]] void Report(const std::string& sWhat);

  const int m_LimitS;
  std::function<QString()> m_Details;
  std::mutex m_Mutex;
  std::condition_variable m_Wake;
  std::deque<std::string> m_Actions;
  std::chrono::steady_clock::time_point m_Begin;
  bool m_bEnd = false;
  std::thread m_Thread;
};
