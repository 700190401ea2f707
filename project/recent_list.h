#pragma once

#include <functional>

#include <QStringList>

// Paths that were in use last, latest first, each once.
class CRecentList {
public:
  using CLASS_FILTER = bool (*)(const QString& sPath);

  CRecentList(int Cap, CLASS_FILTER IsInClass) : m_Cap(Cap), m_IsInClass(IsInClass) {}

  // A file was saved under a new name (sOld in the list) or opened (sOld empty).
  void Update(const QString& sOld, const QString& sNew);
  // Takes over a list; entries of another class and files that do not exist drop out.
  void Install(QStringList Paths);
  const QStringList& Paths() const { return m_Paths; }
  // Told after each change.
  void SetListener(std::function<void()> Listener) { m_Listener = std::move(Listener); }

private:
  int m_Cap;
  CLASS_FILTER m_IsInClass;
  QStringList m_Paths;
  std::function<void()> m_Listener;
};

inline constexpr int MAX_RECENT_PROJECTS = 4;
inline constexpr int MAX_RECENT_PROGRAMS = 10;
