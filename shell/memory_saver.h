#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include "device/device_event_listener.h"

// Reads ranges of target memory and writes each to a binary file as soon as it is there. Bytes that cannot be read are
// zero in the file, and the console says how many they are. Main thread.
class CMemorySaver : public QObject, public CDeviceEventListener {
public:
  CMemorySaver();

  // False when the range cannot be asked for. A target that cannot be read while it runs is halted for the read.
  bool Save(const QString& sPath, U32 Addr, U32 NumBytes);

  void OnDeviceReadMemDone(U32 Addr, U32 NumBytes, U8* paData, U8* paStatus) override;
  // These take reads back that have not begun.
  void OnDeviceHaltDone(U32, HALT_REASONS) override { AskAgain(); }
  void OnDeviceStepped(U32) override { AskAgain(); }
  void OnDeviceResumeDone(RESUME_MODES) override { AskAgain(); }
  void OnDeviceResetDone(U32, RESET_MODES) override { AskAgain(); }
  void OnDeviceDisconnectDone() override { GiveUp(); }
  void OnDeviceConnectionLost() override { GiveUp(); }

private:
  struct SAVE {
    QString sPath;
    U32 Addr = 0;
    U32 NumBytes = 0;
  };
  bool Ask(const SAVE& Save);
  void AskAgain();
  void GiveUp();

  QList<SAVE> m_Saves;  // waiting
  QTimer m_Check;       // while one waits: its read may be taken back without an event, too
};
