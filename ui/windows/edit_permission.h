#pragma once

#include <functional>

#include <QSet>
#include <QString>

#include "device/device_event_listener.h"
#include "ui/windows/source_types.h"

// Whether a document may be edited: by the preference that restricts it, and in a connected session by the user, who is
// asked once a document.
class CEditPermission : public CDeviceEventListener {
public:
  // Empty: whether the device is connected.
  void SetSessionQuery(std::function<bool()> IsInSession) { m_IsInSession = std::move(IsInSession); }
  // Empty: a box.
  void SetQuestion(std::function<EDIT_ANSWER()> Ask) { m_Ask = std::move(Ask); }
  // As far as that can be said without asking.
  bool IsPossible() const;
  // Asks where that is due.
  bool IsGiven(const QString& sPath);

  void OnDeviceDisconnectDone() override { m_Confirmed.clear(); }

private:
  bool IsInSession() const;

  std::function<bool()> m_IsInSession;
  std::function<EDIT_ANSWER()> m_Ask;
  QSet<QString> m_Confirmed;  // paths, in this session
};
