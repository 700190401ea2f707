#include <QApplication>
#include <QFile>
#include <QLibraryInfo>

#include <cstdio>
#include <cstring>

#include "device/device.h"
#include "device/device_data_provider.h"
#include "shell/batch_session.h"
#include "shell/log/log.h"
#include "shell/look/look.h"
#include "shell/main_window.h"
#include "shell/settings/cmd_line_args.h"
#include "shell/settings/fonts.h"
#include "shell/settings/settings_cache.h"

namespace {

constexpr int START_DRAG_DISTANCE = 30;  // pixels

// A batch session needs no display: the platform is chosen before the application exists.
QString FindBatchFile(int argc, char** argv) {
  QStringList Arguments;
  bool bPlatform = false;
  for (int i = 0; i < argc; ++i) {
    Arguments << QString::fromLocal8Bit(argv[i]);
    bPlatform = bPlatform || std::strcmp(argv[i], "-platform") == 0;
  }
  const QString sFile = CBatchSession::FileOf(Arguments);
  if (!sFile.isEmpty() && !bPlatform && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  return sFile;
}

void OpenApplicationLog(const CMD_LINE_ARGS& Args) {
  SetDebugMode(Args.DebugMode);
  SetLogInterval(Args.sLogInterval);
  if (!Args.sLogFile.isEmpty()) OpenLogFile(LOG_FILE_APPLICATION, Args.sLogFile.toUtf8().constData());
}

int RunApplication(CBatchSession* pBatch) {
  qInstallMessageHandler(HandleQtMessage);
  auto pWindow = std::make_unique<CMainWindow>();
  if (pBatch) pBatch->Run(*pWindow);
  pWindow->show();
  const int Result = QApplication::exec();
  pWindow.reset();
  SaveSettings();
  CloseLogFiles();
  return pBatch ? pBatch->ExitCode() : Result;
}

}  // namespace

int main(int argc, char** argv) {
  const QString sBatchFile = FindBatchFile(argc, argv);
  CBatchSession Batch;
  if (!sBatchFile.isEmpty()) {
    CBatchSession::SetActive(true);
    SetSettingsInMemory(true);
    if (!Batch.Load(sBatchFile)) return 1;
  }
  QApplication Application(argc, argv);
  QApplication::setStartDragDistance(START_DRAG_DISTANCE);
  // Whatever lies beside the program is no plug-in of the toolkit.
  QCoreApplication::setLibraryPaths({QLibraryInfo::path(QLibraryInfo::PluginsPath)});
  QCoreApplication::setOrganizationName(QStringLiteral("Morvek"));
  QCoreApplication::setApplicationName(QStringLiteral("Vexor"));
  SetCmdLineArgs(ParseCmdLine(QCoreApplication::arguments()));
  OpenApplicationLog(GetCmdLineArgs());
  QFont Font = QApplication::font();
  Font.setPointSize(FONT_DEFAULT_POINT_SIZE);
  SetFont(FONT_APP, Font, false, false);
  CDeviceDataProvider::Get();
  return RunApplication(sBatchFile.isEmpty() ? nullptr : &Batch);
}
