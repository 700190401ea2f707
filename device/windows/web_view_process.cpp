#include "device/windows/web_view_process.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>

namespace {

constexpr int END_WAIT_MS = 2000;

QString sProgram;

QString Program() {
  return sProgram.isEmpty() ? QCoreApplication::applicationDirPath() + QStringLiteral("/vexor-web-view") : sProgram;
}

}  // namespace

CWebViewProcess::CWebViewProcess(QObject* pParent) : QObject(pParent), m_Process(this) {
  m_Process.setStandardErrorFile(QProcess::nullDevice());
  connect(&m_Process, &QProcess::readyReadStandardOutput, this, &CWebViewProcess::OnOutput);
  connect(&m_Process, &QProcess::finished, this, &CWebViewProcess::OnFinished);
  connect(&m_Process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError Error) {
    if (Error == QProcess::FailedToStart) OnFinished();
  });
}

CWebViewProcess::~CWebViewProcess() {
  m_Process.disconnect(this);
  m_Process.closeWriteChannel();
  if (IsRunning() && !m_Process.waitForFinished(END_WAIT_MS)) m_Process.kill();
}

void CWebViewProcess::SetProgram(const QString& sPath) {
  sProgram = sPath;
}

bool CWebViewProcess::IsInstalled() {
  return QFileInfo(Program()).isExecutable();
}

bool CWebViewProcess::CanEmbed() {
  return QGuiApplication::platformName() == QLatin1String("xcb");
}

void CWebViewProcess::Start() {
  m_Process.start(Program(), QStringList());
}

void CWebViewProcess::Load(const QUrl& URL) {
  Send("load " + URL.toEncoded());
}

void CWebViewProcess::Embed(WId Parent) {
  Send("parent " + QByteArray::number(static_cast<qulonglong>(Parent)));
}

void CWebViewProcess::Resize(const QSize& Size) {
  Send("size " + QByteArray::number(Size.width()) + ' ' + QByteArray::number(Size.height()));
}

void CWebViewProcess::SetShown(bool bOn) {
  Send(bOn ? "show" : "hide");
}

void CWebViewProcess::Send(const QByteArray& sLine) {
  if (IsRunning()) m_Process.write(sLine + '\n');
}

void CWebViewProcess::OnOutput() {
  while (m_Process.canReadLine()) {
    const QList<QByteArray> Words = m_Process.readLine().trimmed().split(' ');
    if (Words.size() != 2 || (Words[0] != "loaded" && Words[0] != "failed")) continue;
    Q_EMIT Loaded(QUrl::fromEncoded(Words[1]), Words[0] == "loaded");
  }
}

void CWebViewProcess::OnFinished() {
  Q_EMIT Ended();
}
