#include "shell/batch_session.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>

#include <cstdio>

#include "device/device.h"
#include "project/file_classes.h"
#include "project/project.h"
#include "script/vscript.h"
#include "shell/actions/command_console.h"
#include "shell/log/console_print.h"
#include "shell/main_window.h"
#include "shell/windows/console_window.h"
#include "ui/dialog.h"
#include "ui/message_box.h"
#include "ui/warnings_dialog.h"

namespace {

constexpr int POLL_MS = 2;
constexpr int DEFAULT_WAIT_MS = 10'000;
constexpr int SETTLE_MS = 500;
constexpr QSize WINDOW_SIZE(1280, 800);  // pixels

bool bBatch = false;

void Print(const QString& sText) {
  std::fprintf(stdout, "%s\n", sText.toUtf8().constData());
  std::fflush(stdout);
}

// Of what stands behind -batch, -1 if there is none.
qsizetype IndexOfFile(const QStringList& Arguments) {
  for (qsizetype i = 1; i + 1 < Arguments.size(); ++i) {
    QString sOption = Arguments[i];
    while (sOption.startsWith(QLatin1Char('-'))) sOption.remove(0, 1);
    if (Arguments[i].startsWith(QLatin1Char('-')) && sOption.compare(QLatin1String("batch"), Qt::CaseInsensitive) == 0)
      return i + 1;
  }
  return -1;
}

}  // namespace

QString CBatchSession::FileOf(const QStringList& Arguments) {
  return Arguments.value(IndexOfFile(Arguments));
}

QStringList CBatchSession::WithoutFile(QStringList Arguments) {
  if (const qsizetype File = IndexOfFile(Arguments); File >= 0) Arguments.remove(File - 1, 2);
  return Arguments;
}

void CBatchSession::SetActive(bool bOn) {
  bBatch = bOn;
}
bool CBatchSession::IsActive() {
  return bBatch;
}

bool CBatchSession::Load(const QString& sFile) {
  QFile File(sFile);
  const bool bOpen =
      sFile == QLatin1String("-") ? File.open(stdin, QIODevice::ReadOnly) : File.open(QIODevice::ReadOnly);
  if (!bOpen) {
    std::fprintf(stderr, "vexor: cannot read the batch file \"%s\": %s\n", sFile.toUtf8().constData(),
                 File.errorString().toUtf8().constData());
    return false;
  }
  m_Lines = QString::fromUtf8(File.readAll()).split(QLatin1Char('\n'));
  return true;
}

void CBatchSession::Run(CMainWindow& Window) {
  m_pWindow = &Window;
  Window.resize(WINDOW_SIZE);
  CMessageBox::SetResponder(
      [this](const QString& sTitle, const QString& sText, int Default) { return Answer(sTitle, sText, Default); });
  CWarningsDialog::SetResponder([this](const QString& sTitle, const QStringList& Lines) {
    PrintMessages();
    Print(QStringLiteral("[%1] %2").arg(sTitle, Lines.join(QLatin1Char('\n'))));
    return false;
  });
  CDialog::SetResponder([this](const QString& sTitle) {
    PrintMessages();
    Print(QStringLiteral("[%1] cancelled").arg(sTitle));
  });
  connect(&Window.Console(), &CConsoleWindow::MessageShown, this, [](const QString& sText) { Print(sText); });
  m_Timer.setInterval(POLL_MS);
  connect(&m_Timer, &QTimer::timeout, this, &CBatchSession::Step);
  // A project of the command line comes first.
  connect(&Window, &CMainWindow::Started, this, [this] {
    m_Wait = WAIT_IDLE;
    m_WaitLimitMS = DEFAULT_WAIT_MS;
    m_WaitTime.start();
    m_Timer.start();
  });
}

int CBatchSession::Answer(const QString& sTitle, const QString& sText, int DefaultResult) {
  PrintMessages();
  Print(QStringLiteral("[%1] %2").arg(sTitle, sText));
  const int Result = m_NextAnswer >= 0 ? m_NextAnswer : DefaultResult;
  m_NextAnswer = -1;
  return Result;
}

void CBatchSession::PrintMessages() {
  if (m_pWindow) m_pWindow->Console().DrainAll();
}

void CBatchSession::Step() {
  // A command may turn the event loop; its successors wait until it has returned.
  if (m_bInStep || m_bFinished) return;
  m_bInStep = true;
  PrintMessages();
  if (m_Wait != WAIT_NONE) {
    if (IsWaitOver()) {
      m_Wait = WAIT_NONE;
      // The console has said why.
      if (m_Line == 0 && IsProjectMissing()) Finish(1);
    } else if (m_WaitTime.elapsed() > m_WaitLimitMS) {
      Fail(QStringLiteral("timeout after %1 ms").arg(m_WaitLimitMS));
    }
  } else if (m_Line < m_Lines.size()) {
    RunLine(m_Lines[m_Line++].trimmed());
  } else {
    Finish(m_ExitCode);
  }
  m_bInStep = false;
}

// A project of the command line could not be opened, or its functions not be read.
bool CBatchSession::IsProjectMissing() const {
  const bool bWanted = IsProjectFile(WithoutFile(QCoreApplication::arguments()).value(1));
  return bWanted && (CProject::Get().GetFileName().isEmpty() || VScript::HasError());
}

void CBatchSession::RunLine(QString sLine) {
  if (sLine.isEmpty() || sLine.startsWith(QLatin1Char('#')) || sLine.startsWith(QLatin1String("//"))) return;
  if (sLine.startsWith(QLatin1Char('@'))) {
    RunDirective(sLine);
    return;
  }
  const bool bMayFail = sLine.startsWith(QLatin1Char('-'));
  if (bMayFail) sLine = sLine.mid(1).trimmed();
  RunCommand(sLine, bMayFail);
}

void CBatchSession::RunCommand(const QString& sCommand, bool bMayFail) {
  const COMMAND_RESULT Result = ExecuteCommand(sCommand);
  PrintMessages();
  const COMMAND_REPORT Report = GetLastCommand();
  if (Result == COMMAND_RAN && Report.HasResult && Report.sError.isEmpty()) {
    Print(QStringLiteral("=> 0x") + QStringLiteral("%1").arg(Report.Result, 8, 16, QLatin1Char('0')).toUpper());
  }
  if (!bMayFail && (Result != COMMAND_RAN || !Report.sError.isEmpty())) Finish(1);
}

void CBatchSession::RunDirective(const QString& sLine) {
  const QStringList Words = sLine.mid(1).split(QLatin1Char(' '), Qt::SkipEmptyParts);
  const QString sName = Words.value(0);
  if (sName == QLatin1String("wait")) {
    if (!StartWait(Words)) Fail(QStringLiteral("unknown state"));
  } else if (sName == QLatin1String("answer")) {
    static const QHash<QString, int> ANSWERS = {{QStringLiteral("yes"), CMessageBox::ACCEPTED},
                                                {QStringLiteral("no"), CMessageBox::DECLINED},
                                                {QStringLiteral("cancel"), CMessageBox::OTHER}};
    m_NextAnswer = ANSWERS.value(Words.value(1), -1);
    if (m_NextAnswer < 0) Fail(QStringLiteral("unknown answer"));
  } else if (sName == QLatin1String("dump")) {
    const CWindow* const pWindow = m_pWindow->FindWindow(Words.mid(1).join(QLatin1Char(' ')), false);
    if (pWindow) {
      Print(pWindow->DumpText());
    } else {
      Fail(QStringLiteral("unknown window"));
    }
  } else if (sName == QLatin1String("screenshot")) {
    if (!TakeScreenshot(Words)) Fail(QStringLiteral("could not write the picture"));
  } else if (sName == QLatin1String("quit")) {
    Finish(Words.value(1).toInt());
  } else {
    Fail(QStringLiteral("unknown directive"));
  }
}

bool CBatchSession::StartWait(const QStringList& Words) {
  static const QHash<QString, WAIT_FOR> STATES = {
      {QStringLiteral("halted"), WAIT_HALTED},       {QStringLiteral("running"), WAIT_RUNNING},
      {QStringLiteral("connected"), WAIT_CONNECTED}, {QStringLiteral("disconnected"), WAIT_DISCONNECTED},
      {QStringLiteral("idle"), WAIT_IDLE},
  };
  m_Wait = STATES.value(Words.value(1), WAIT_NONE);
  bool bNumber = false;
  m_WaitLimitMS = Words.value(2).toInt(&bNumber);
  if (!bNumber) m_WaitLimitMS = DEFAULT_WAIT_MS;
  m_WaitTime.start();
  return m_Wait != WAIT_NONE;
}

bool CBatchSession::IsWaitOver() const {
  const CDevice& Device = CDevice::Get();
  // In the order in which each leads to the next.
  const bool bIdle = !Device.IsJobPending(JT_ANY) && !Device.IsRequestPending() && !Device.IsHaltUnderWay() &&
                     !Device.HasEvents() && m_pWindow->IsIdle();
  switch (m_Wait) {
    case WAIT_HALTED:
      return bIdle && Device.IsConnected() && Device.IsAccessible() && Device.IsSessionReady();
    case WAIT_RUNNING:
      return bIdle && Device.IsConnected() && !Device.IsHalted();
    case WAIT_CONNECTED:
      return bIdle && Device.IsConnected();
    case WAIT_DISCONNECTED:
      return bIdle && !Device.IsConnected();
    case WAIT_IDLE:
      return bIdle;
    default:
      return true;
  }
}

bool CBatchSession::TakeScreenshot(const QStringList& Words) {
  const QString sFile = Words.value(1);
  QWidget* pTarget = m_pWindow;
  if (Words.size() > 2) pTarget = m_pWindow->FindWindow(Words.mid(2).join(QLatin1Char(' ')), false);
  if (sFile.isEmpty() || pTarget == nullptr) return false;
  QDir().mkpath(QFileInfo(sFile).absolutePath());
  // The status bar shows what has changed a moment later.
  const QDeadlineTimer Settled(SETTLE_MS);
  while (!Settled.hasExpired()) QCoreApplication::processEvents(QEventLoop::AllEvents, POLL_MS);
  return pTarget->grab().save(sFile);
}

void CBatchSession::Fail(const QString& sText) {
  const QString sWhere = m_Line > 0 ? m_Lines.value(m_Line - 1).trimmed() : QStringLiteral("start");
  Print(QStringLiteral("%1: %2").arg(sWhere, sText));
  Finish(1);
}

void CBatchSession::Finish(int ExitCode) {
  if (m_bFinished) return;
  m_bFinished = true;
  m_ExitCode = ExitCode;
  m_Timer.stop();
  PrintMessages();
  m_NextAnswer = -1;
  CMessageBox::SetResponder([](const QString&, const QString&, int) { return CMessageBox::DECLINED; });
  QMetaObject::invokeMethod(m_pWindow, &QWidget::close, Qt::QueuedConnection);
}
