#pragma once

#include <QSocketNotifier>
#include <QWebEngineLoadingInfo>
#include <QWebEngineView>
#include <QWindow>

#include <memory>

// One page of this host in a window, which another program drives by lines on the standard input: "load URL", "show",
// "hide", "parent ID" for the window that embeds it, "size WIDTH HEIGHT". On the standard output come "loaded URL" or
// "failed URL" for each page. The end of the input ends the program.
class CPageView : public QWebEngineView {
  Q_OBJECT

public:
  CPageView();

protected:
  bool event(QEvent* pEvent) override;

private:
  void OnInput();
  void OnLoading(const QWebEngineLoadingInfo& Info);
  void Obey(const QList<QByteArray>& Words);
  void Embed(WId Parent);
  void TakePlace();

  QSocketNotifier m_Input;
  QByteArray m_sPending;
  std::unique_ptr<QWindow> m_pParent;
};
