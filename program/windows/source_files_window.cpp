#include "program/windows/source_files_window.h"

#include <QElapsedTimer>
#include <QFile>

#include "base/msg_flags.h"
#include "base/text.h"
#include "program/database/file_finder.h"
#include "program/windows/src_files_data_model.h"
#include "project/file_classes.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_ids.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "ui/popup_menu.h"
#include "ui/windows/locate_file.h"

namespace {

constexpr qint64 NS_PER_MS = 1'000'000;
constexpr qint64 NS_PER_US = 1000;
constexpr qint64 US_PER_MS = 1000;

QString DurationText(qint64 Nanoseconds) {
  return QStringLiteral("%1:%2 ms")
      .arg(Nanoseconds / NS_PER_MS)
      .arg(Nanoseconds / NS_PER_US % US_PER_MS, 3, 10, QLatin1Char('0'));
}

// 0 for a file that can't be read.
qsizetype NumLinesOf(const QString& sPath) {
  QFile File(sPath);
  if (!File.open(QIODevice::ReadOnly)) return 0;
  const QByteArray Text = File.readAll();
  return Text.count('\n') + (!Text.isEmpty() && !Text.endsWith('\n'));
}

}  // namespace

CSourceFilesWindow::CSourceFilesWindow(QWidget* pParent)
    : CModelViewWindow(pParent, QStringLiteral("Source Files"), new CSourceFilesDataModel),
      pFiles(static_cast<CSourceFilesDataModel*>(pModel)) {
  Flags |= WF_FILTER_BAR;
  actionSrcFilesOpen = new QAction(GetIcon(QStringLiteral("file-open.png")), QStringLiteral("&Open File"), this);
  actionSrcFilesOpen->setObjectName(QStringLiteral("actionSrcFilesOpen"));
  Connect(actionSrcFilesOpen, SIGNAL(triggered()), this, SLOT(OnActionOpenTriggered()));
  Init();
}

void CSourceFilesWindow::Clear() {
  pFiles->Clear();
  CModelViewWindow::Clear();
}

void CSourceFilesWindow::Reload() {
  QElapsedTimer Timer;
  Timer.start();
  {
    const CFindBurst Burst;
    pFiles->Reload();
  }
  LogMsg(QStringLiteral("Source files window initialized in ") + DurationText(Timer.nsecsElapsed()),
         MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE);
}

void CSourceFilesWindow::InvalidateFilePaths() {
  const CFindBurst Burst;
  pFiles->InvalidateFilePaths();
  UpdateActions();
}

QString CSourceFilesWindow::GetEmptyWindowText(DEBUG_STATES) const {
  return QStringLiteral("No source files");
}

void CSourceFilesWindow::OnDeviceDisconnectDone() {
  CModelViewWindow::OnDeviceDisconnectDone();
  Repaint();
}

QString CSourceFilesWindow::GetItemTooltip(const QModelIndex& Index, CToolTip::PAIRS& Pairs) const {
  const CSourceFilesDataModel::FILE_ITEM& Item = *pFiles->ItemOf(Index);
  const QString sType = FileTypeName(Item.sPath);
  if (!sType.isEmpty()) Pairs << qMakePair(QStringLiteral("Type"), sType);
  QString sStatus = Item.Code.isEmpty() ? QStringLiteral("included") : QStringLiteral("compiled");
  if (!Item.bExists) sStatus = QStringLiteral("missing");
  Pairs << qMakePair(QStringLiteral("Status"), sStatus);
  if (const qsizetype NumLines = Item.bExists ? NumLinesOf(Item.sFound) : 0; NumLines > 0) {
    Pairs << qMakePair(QStringLiteral("Lines"), GroupedText(static_cast<U64>(NumLines)));
  }
  if (!Item.Code.isEmpty()) {
    Pairs << qMakePair(QStringLiteral("Address"), AddrText(Item.Code.first().Start, true) + QStringLiteral(" - ") +
                                                      AddrText(Item.Code.last().End() - 1, true))
          << qMakePair(QStringLiteral("Bytes"), GroupedText(Item.NumBytes))
          << qMakePair(QStringLiteral("Instructions"), GroupedText(static_cast<U64>(Item.NumInsts)));
  }
  return Item.sName;
}

void CSourceFilesWindow::UpdateActions() {
  CModelViewWindow::UpdateActions();
  if (actionSrcFilesOpen == nullptr) return;
  const auto* const pItem = pFiles->ItemOf(GetCurrentItem());
  actionSrcFilesOpen->setEnabled(pItem && pItem->bExists);
}

void CSourceFilesWindow::OnActionOpenTriggered() {
  const auto* const pItem = pFiles->ItemOf(GetCurrentItem());
  if (pItem) PerformAction(ACTION_FILE_OPEN, pItem->sFound);
}

void CSourceFilesWindow::OnItemDoubleClicked(const QModelIndex& Index) {
  const auto* const pItem = pFiles->ItemOf(Index);
  if (pItem) PerformAction(ACTION_FILE_OPEN, pItem->sFound);
}

void CSourceFilesWindow::Locate(const QModelIndex& Index) {
  const auto* const pItem = pFiles->ItemOf(Index);
  if (pItem == nullptr) return;
  LocateFile(this, pItem->sPath);
  InvalidateFilePaths();
}

void CSourceFilesWindow::AddItemEntries(CPopupMenu& Menu, const QModelIndex& Index) {
  const auto* const pItem = pFiles->ItemOf(Index);
  if (pItem == nullptr) return;
  if (pItem->bExists) Menu.AddAction(actionSrcFilesOpen);
  QAction* const pLocate = Menu.addAction(QStringLiteral("&Locate File..."));
  pLocate->setEnabled(!pItem->bExists);
  const QPersistentModelIndex Item = Index;
  connect(pLocate, &QAction::triggered, this, [this, Item] { Locate(Item); });
}
