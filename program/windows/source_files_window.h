#pragma once

#include "ui/table/model_view_window.h"

class CSourceFilesDataModel;

// The source files of the program: which have code, which were found on this host. The place to open them, and to show
// where missing ones lie. Main thread.
class CSourceFilesWindow : public CModelViewWindow {
  Q_OBJECT

public:
  explicit CSourceFilesWindow(QWidget* pParent);

  void Clear() override;
  void Reload() override;
  QString GetEmptyWindowText(DEBUG_STATES State) const override;
  QString GetItemTooltip(const QModelIndex& Index, CToolTip::PAIRS& Pairs) const override;
  void OnItemDoubleClicked(const QModelIndex& Index) override;
  void OnDeviceDisconnectDone() override;

public Q_SLOTS:
  void OnActionOpenTriggered();
  // Rules by which files are found have changed.
  void InvalidateFilePaths();

protected:
  void UpdateActions() override;
  void AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) override;

private:
  void Locate(const QModelIndex& Index);

  CSourceFilesDataModel* pFiles;
  QAction* actionSrcFilesOpen = nullptr;
};
