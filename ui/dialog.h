#pragma once

#include <functional>

#include <QDialog>
#include <QList>
#include <QPair>
#include <QPointer>
#include <QVariant>

#include "shell/settings/settings_cache.h"

class QTableView;

// Base of the dialogs: in the application's font, closed by Escape, and as large as the user left it, with the columns
// of its tables as they were left.
class CDialog : public QDialog {
  Q_OBJECT

public:
  // sName becomes the object name; the dialog keeps its settings under AppData/<sName>. pParent becomes the parent, and
  // the owner, when the dialog is first shown.
  CDialog(QWidget* pParent, const QString& sName, const QString& sTitle);

  // Takes the application's font as it is now.
  void ApplyFont();
  void setVisible(bool bOn) override;
  // Runs the dialog. With a responder nothing is shown and the result is Rejected.
  int exec() override;
  // Stands in for a user who isn't there, as in a batch session: is told the title of each dialog that would have been
  // shown. Null: dialogs are shown.
  using RESPONDER = std::function<void(const QString& sTitle)>;
  static void SetResponder(RESPONDER Responder);

protected:
  // A dialog whose contents gain nothing from room keeps the size that they need, and none is remembered.
  void SetFixedToContents();
  // Values of the dialog's own settings group.
  QVariant Setting(const QString& sKey, const QVariant& Default) const;
  void StoreSetting(const QString& sKey, const QVariant& Value) const;

  void showEvent(QShowEvent* pEvent) override;
  void hideEvent(QHideEvent* pEvent) override;

private:
  void RestoreHeaders();
  void StoreHeaders();

  SETTING_GROUP m_Group;
  QList<QPair<QPointer<QTableView>, QByteArray>> m_Headers;  // as they were when the dialog was shown
  QPointer<QWidget> m_pParent;
  bool m_bFixed = false;
  bool m_bPlaced = false;
};
