#pragma once

#include <array>

#include <QWidget>

#include "shell/dialogs/trace_settings.h"

class QCheckBox;
class QComboBox;
class QFormLayout;

// The trace port: its width and the delays of its data lines.
class CTracePinsPanel : public QWidget {
  Q_OBJECT

public:
  explicit CTracePinsPanel(QWidget* pParent);
  void ShowSettings(const TRACE_SETTINGS& Settings);
  void StoreSettings(TRACE_SETTINGS* pSettings) const;

Q_SIGNALS:
  void Changed();

private:
  U32 NumLines() const;
  I32 Delay(U32 Line) const;
  void SelectDelay(U32 Line, I32 Picoseconds);
  void OnChanged();
  void ShowRows();

  QFormLayout* m_pForm;
  QComboBox* m_pWidth;
  QCheckBox* m_pOverride;
  QCheckBox* m_pIdentical;
  std::array<QComboBox*, NUM_TRACE_DELAYS> m_paDelay;
};
