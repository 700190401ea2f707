#pragma once

#include <QObject>
#include <QProcess>
#include <QUrl>
#include <QWidget>

// The helper program that shows web pages: an engine of its own in this process would cost every start. It is given
// commands and answers in lines; see device/web_view. Main thread.
class CWebViewProcess : public QObject {
  Q_OBJECT

public:
  explicit CWebViewProcess(QObject* pParent);
  // Ends the helper, which takes its window along.
  ~CWebViewProcess() override;

  // The helper's path, for tests; without it the program beside this one.
  static void SetProgram(const QString& sPath);
  static bool IsInstalled();
  // Whether its window can be embedded on this platform; otherwise it is one of its own.
  static bool CanEmbed();

  // Starts the helper.
  void Start();
  bool IsRunning() const { return m_Process.state() != QProcess::NotRunning; }
  // The answer is Loaded, once for each page, or Ended.
  void Load(const QUrl& URL);
  // Puts its window into another one, which is to tell its size.
  void Embed(WId Parent);
  void Resize(const QSize& Size);
  // Shows or hides its window, and lets the page rest meanwhile.
  void SetShown(bool bOn);

Q_SIGNALS:
  void Loaded(const QUrl& URL, bool bOk);
  // The helper could not be started, or has ended by itself.
  void Ended();

private:
  void OnOutput();
  void OnFinished();
  void Send(const QByteArray& sLine);

  QProcess m_Process;
};
