#pragma once

#include "device/device_event_listener.h"
#include "shell/dialogs/trace_settings.h"
#include "ui/dialog.h"

class CSwoPanel;
class CTracePinsPanel;
class QComboBox;
class QDialogButtonBox;
class QStackedWidget;

// Chooses where trace data comes from, and how. It changes nothing itself; only clocks that it shows are asked of the
// device.
class CTraceSettingsDialog : public CDialog, public CDeviceEventListener {
  Q_OBJECT

public:
  CTraceSettingsDialog(QWidget* pParent, const TRACE_SETTINGS& Settings);

  // What is shown, in all that the chosen source uses.
  TRACE_SETTINGS Settings() const;
  bool IsModified() const { return !TraceChanges(m_Before, Settings()).isEmpty(); }

  void OnDeviceGetSWOSpeedsDone(U32 CPUSpeedHz, U32 NumItems, U32* paSpeedsHz) override;
  void OnDeviceMeasureCoreSpeedDone(U32 SpeedHz) override;

private:
  void LayOut();
  void AlignInputs();
  U32 Source() const;
  void OnSourceChanged();
  void OnChanged();
  void RequestSpeeds(U32 CPUSpeedHz);
  void RequestCoreSpeed();

  TRACE_SETTINGS m_Before;
  QComboBox* m_pSource;
  QStackedWidget* m_pPages;
  CTracePinsPanel* m_pPins;
  CSwoPanel* m_pSwo;
  QDialogButtonBox* m_pButtons;
};
