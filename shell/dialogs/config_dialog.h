#pragma once

#include <QByteArray>
#include <QList>

#include "device/device_config.h"
#include "ui/dialog.h"

class CConfigPanel;
class QDialogButtonBox;
class QLayout;

// Base of the dialogs that edit the configuration of probe, interface and device: takes its XML form, and gives the
// changed one back. Nothing reaches the device from here.
class CConfigDialog : public CDialog {
  Q_OBJECT

public:
  // The configuration as the dialog shows it, or as it last was valid.
  const CDeviceConfig& Config() const { return m_Config; }
  QByteArray XML() const { return m_Config.ToXML(); }
  bool IsModified() const { return XML() != m_sShown; }

protected:
  CConfigDialog(QWidget* pParent, const QString& sName, const QString& sTitle);
  // Called by the constructors once the panels stand in pContents, which is taken over. A text that is no configuration
  // shows the defaults.
  void SetContents(QLayout* pContents, const QList<CConfigPanel*>& Panels, const QByteArray& sXML);

private:
  void OnChanged();

  QList<CConfigPanel*> m_Panels;
  QDialogButtonBox* m_pButtons = nullptr;
  CDeviceConfig m_Config;
  QByteArray m_sShown;  // the configuration before the user changed anything
};
