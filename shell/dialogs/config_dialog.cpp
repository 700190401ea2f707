#include "shell/dialogs/config_dialog.h"

#include <QDialogButtonBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "shell/dialogs/config_panel.h"
#include "shell/look/look.h"

namespace {

constexpr int SPACING = 10;  // pixels

void Load(const QByteArray& sXML, CDeviceConfig* pConfig) {
  QList<CONFIG_ENTRY> Entries;
  QString sError;
  if (!ParseConfigXML(sXML, Entries, sError)) return;
  for (const CONFIG_ENTRY& Entry : Entries) {
    if (!pConfig->SetValue(Entry.Param, Entry.Value)) pConfig->SetText(Entry.Param, Entry.sText);
  }
}

}  // namespace

CConfigDialog::CConfigDialog(QWidget* pParent, const QString& sName, const QString& sTitle)
    : CDialog(pParent, sName, sTitle) {
  setWindowIcon(GetIcon(QStringLiteral("settings-vnode.png")));
}

void CConfigDialog::SetContents(QLayout* pContents, const QList<CConfigPanel*>& Panels, const QByteArray& sXML) {
  m_Panels = Panels;
  m_pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
  m_pButtons->button(QDialogButtonBox::Ok)->setDefault(true);
  auto* const pLayout = new QVBoxLayout(this);
  pLayout->setSpacing(SPACING);
  pLayout->addLayout(pContents, 1);
  pLayout->addWidget(m_pButtons);
  connect(m_pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(m_pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  QList<QWidget*> Inputs;
  for (const CConfigPanel* const pPanel : Panels) Inputs << pPanel->Inputs();
  Inputs << m_pButtons->button(QDialogButtonBox::Ok) << m_pButtons->button(QDialogButtonBox::Cancel);
  for (qsizetype i = 1; i < Inputs.size(); ++i) setTabOrder(Inputs[i - 1], Inputs[i]);
  Load(sXML, &m_Config);
  for (CConfigPanel* const pPanel : Panels) {
    pPanel->ShowConfig(m_Config);
    connect(pPanel, &CConfigPanel::Changed, this, &CConfigDialog::OnChanged);
  }
  OnChanged();
  m_sShown = XML();
}

void CConfigDialog::OnChanged() {
  bool bValid = true;
  for (const CConfigPanel* const pPanel : std::as_const(m_Panels)) {
    if (pPanel->IsInputValid()) {
      pPanel->StoreConfig(&m_Config);
    } else {
      bValid = false;
    }
  }
  m_pButtons->button(QDialogButtonBox::Ok)->setEnabled(bValid);
}
