#include "ui/windows/edit_permission.h"

#include <QPushButton>

#include "device/device.h"
#include "shell/settings/settings_cache.h"
#include "shell/settings/sys_vars.h"
#include "shell/settings/var_ids.h"
#include "ui/message_box.h"

namespace {

// Values of PREF_RESTRICT_SRC_EDIT.
enum EDIT_RESTRICTION : U32 { NOT_WHILE_DEBUGGING = 1, NEVER_EDIT = 2 };

const SETTING_GROUP SETTINGS = {QStringLiteral("AppData"), QStringLiteral("SourceEditor")};
const QString DO_NOT_ASK = QStringLiteral("DoNotShowInfoMsgAgain");

QDialogButtonBox::StandardButton AskUser() {
  const std::unique_ptr<CMessageBox> pBox(CMessageBox::Make(
      QStringLiteral("Edit Document"),
      QStringLiteral("You are about to edit this document. Note that edited documents might not match\n"
                     "the debug information until the application is recompiled and programmed.\n"
                     "Condinue editing?"),
      CMessageBox::NO_CHECK_BOX, QStringLiteral("message-question.png"),
      QDialogButtonBox::Yes | QDialogButtonBox::YesToAll | QDialogButtonBox::No));
  pBox->Button(QDialogButtonBox::YesToAll)->setText(QStringLiteral("Yes and do not show again"));
  pBox->exec();
  return pBox->PressedButton();
}

}  // namespace

bool CEditPermission::IsInSession() const {
  return m_IsInSession ? m_IsInSession() : CDevice::Get().IsConnected();
}

bool CEditPermission::IsPossible() const {
  const U32 Restriction = GetVarValue(PREF_RESTRICT_SRC_EDIT);
  return Restriction != NEVER_EDIT && !(Restriction == NOT_WHILE_DEBUGGING && IsInSession());
}

bool CEditPermission::IsGiven(const QString& sPath) {
  if (!IsPossible()) return false;
  if (!IsInSession() || m_Confirmed.contains(sPath) || GetSetting(SETTINGS, DO_NOT_ASK, false).toBool()) return true;
  const QDialogButtonBox::StandardButton Answer = AskUser();
  if (Answer == QDialogButtonBox::YesToAll) SetSetting(SETTINGS, DO_NOT_ASK, true);
  const bool bGiven = Answer == QDialogButtonBox::Yes || Answer == QDialogButtonBox::YesToAll;
  if (bGiven) m_Confirmed.insert(sPath);
  return bGiven;
}
