#pragma once

#include "ui/table/model_view_window.h"

class CFunctionsDataModel;

// The functions of the program: where they are and how big, which have breakpoints. Leads to their sources. Main
// thread.
class CFunctionsWindow : public CModelViewWindow {
  Q_OBJECT

public:
  explicit CFunctionsWindow(QWidget* pParent);

  void Clear() override;
  void Reload() override;
  void SetPreference(int VarID, int Value) override;
  QString GetEmptyWindowText(DEBUG_STATES State) const override;
  void OnItemClicked(const QModelIndex& Index) override;
  void OnItemDoubleClicked(const QModelIndex& Index) override;

public Q_SLOTS:
  void OnActionSetBpTriggered();
  void OnActionClearAllBpTriggered();

protected:
  void UpdateActions() override;
  void AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) override;

private:
  void TakeBreakpoints();

  CFunctionsDataModel* pFunctions;
  QAction* actionFuncSetBP = nullptr;
  QAction* actionFuncClearAllBP = nullptr;
};
