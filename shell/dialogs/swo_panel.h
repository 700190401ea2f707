#pragma once

#include <QList>
#include <QWidget>

#include "shell/dialogs/trace_settings.h"

class QCheckBox;
class QComboBox;
class QSpinBox;

// The clocks of Serial Wire Output.
class CSwoPanel : public QWidget {
  Q_OBJECT

public:
  // bCapable: probe and target can do it; otherwise nothing can be set.
  CSwoPanel(bool bCapable, QWidget* pParent);
  // CoreSpeed: the core's measured speed in Hz, 0 unknown; shown for an automatic clock.
  void ShowSettings(const TRACE_SETTINGS& Settings, U32 CoreSpeed);
  void StoreSettings(TRACE_SETTINGS* pSettings) const;
  bool IsInputValid() const;
  void SetCoreSpeed(U32 SpeedHz);
  // The speeds that probe and CPU clock make possible, in Hz.
  void SetSpeeds(const QList<U32>& SpeedsHz);

Q_SIGNALS:
  void Changed();
  // The possible speeds are wanted for another CPU clock, in Hz.
  void CPUClockChanged(U32 SpeedHz);
  // The user wants the CPU clock to be measured.
  void CoreSpeedWanted();

private:
  void OnChanged();
  U32 SWOSpeed(bool* pOk) const;

  QSpinBox* m_pCPUClock;
  QCheckBox* m_pCPUAuto;
  QComboBox* m_pSWOClock;
  QCheckBox* m_pSWOAuto;
  bool m_bCapable;
};
