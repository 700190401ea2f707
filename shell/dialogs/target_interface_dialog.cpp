#include "shell/dialogs/target_interface_dialog.h"

#include <QVBoxLayout>

#include "shell/dialogs/target_interface_panel.h"

CTargetInterfaceDialog::CTargetInterfaceDialog(QWidget* pParent, const QByteArray& sXML)
    : CConfigDialog(pParent, QStringLiteral("TargetInterfaceDialog"), QStringLiteral("Target Interface")) {
  auto* const pPanel = new CTargetInterfacePanel(this);
  auto* const pContents = new QVBoxLayout;
  pContents->addWidget(pPanel);
  SetContents(pContents, {pPanel}, sXML);
  SetFixedToContents();
}
