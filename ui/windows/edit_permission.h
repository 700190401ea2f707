#pragma once

#include <functional>

#include <QSet>
#include <QString>

#include "device/device_event_listener.h"

// Whether a document may be edited: by the preference that restricts it, and in a connected session by the user, who is
// asked once a document.
class CEditPermission : public CDeviceEventListener {
public:
  // Empty: whether the device is connected.
  void SetSessionQuery(std::function<bool()> IsInSession) { m_IsInSession = std::move(IsInSession); }
  // As far as that can be said without asking.
  bool IsPossible() const;
  // Asks where that is due.
  bool IsGiven(const QString& sPath);

  void OnDeviceDisconnectDone() override { m_Confirmed.clear(); }

private:
  bool IsInSession() const;

  std::function<bool()> m_IsInSession;
  QSet<QString> m_Confirmed;  // paths, in this session
};
