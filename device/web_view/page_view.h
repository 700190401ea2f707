#pragma once

#include <QSocketNotifier>
#include <QWebEngineLoadingInfo>
#include <QWebEngineView>
#include <QWindow>

#include <memory>

// One page of this host in a window, which another program drives by lines on the standard input: "load URL", "show",
// "hide", "parent ID" for the window that embeds it, "size WIDTH HEIGHT". On the standard output come "loaded URL" or
// "failed URL" for each page but one that another follows at once. The end of the input ends the program.
class CPageView : public QWebEngineView {
  Q_OBJECT

public:
  CPageView();

protected:
  bool event(QEvent* pEvent) override;

private:
  void OnInput();
  void OnLoading(const QWebEngineLoadingInfo& Info);
  void LoadNext();
  void OnWaitedLong();
  void Obey(const QList<QByteArray>& Words);
  void Embed(WId Parent);
  void TakePlace();

  QSocketNotifier m_Input;
  QByteArray m_sPending;
  QUrl m_Next;  // as soon as what is being loaded has ended
  bool m_bLoading = false;
  std::unique_ptr<QWindow> m_pParent;
};
