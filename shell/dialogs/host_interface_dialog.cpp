#include "shell/dialogs/host_interface_dialog.h"

#include <QVBoxLayout>

#include "shell/dialogs/host_interface_panel.h"

CHostInterfaceDialog::CHostInterfaceDialog(QWidget* pParent, const QByteArray& sXML)
    : CConfigDialog(pParent, QStringLiteral("HostInterfaceDialog"), QStringLiteral("Host Interface")) {
  auto* const pPanel = new CHostInterfacePanel(this);
  auto* const pContents = new QVBoxLayout;
  pContents->addWidget(pPanel);
  SetContents(pContents, {pPanel}, sXML);
  SetFixedToContents();
}
