#pragma once

#include <QList>
#include <QWidget>

class CDeviceConfig;

// Editors for one part of the device's configuration, to stand in a CConfigDialog.
class CConfigPanel : public QWidget {
  Q_OBJECT

public:
  using QWidget::QWidget;
  virtual void ShowConfig(const CDeviceConfig& Config) = 0;
  // Writes what is shown, and only that part of the configuration; called while the input is valid.
  virtual void StoreConfig(CDeviceConfig* pConfig) const = 0;
  virtual bool IsInputValid() const = 0;
  // The inputs in the order in which Tab goes through them.
  virtual QList<QWidget*> Inputs() const = 0;

Q_SIGNALS:
  // The user has changed something.
  void Changed();
};
