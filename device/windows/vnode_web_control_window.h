#pragma once

#include <QUrl>

#include "ui/window.h"

class CWebViewProcess;

// The page that the probe serves on this host, while a session lasts. Where no page can be shown it offers the user's
// browser.
class CVNodeWebControlWindow : public CWindow {
  Q_OBJECT

public:
  explicit CVNodeWebControlWindow(QWidget* pParent);
  ~CVNodeWebControlWindow() override;

  // Leaves the page; its server goes with the session.
  void Clear() override;
  // Loads the page if the window is visible and enabled and shows it not yet.
  void Update(U32 NewPC) override;
  bool IsEmpty() const override { return m_pPage == nullptr || !m_bLoaded; }
  QString GetEmptyWindowText(DEBUG_STATES State) const override;
  QString GetEmptyWindowButtonText(DEBUG_STATES State) const override;
  // The address of the page that is shown.
  QString DumpText() const override { return m_bLoaded ? m_URL.toString() : QString(); }

  void OnDeviceConnectDone(CONNECT_MODES Mode) override;
  void OnVisibilityChanged(bool bVisible) override;
  void OnEmptyWindowButtonClicked() override;

protected:
  bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
  void OnLoaded(const QUrl& URL, bool bOk);
  void OnViewEnded();
  // The page can't be shown in this session.
  void GiveUp();
  void ShowPage();
  void TellContent();
  void StartView();

  CWebViewProcess* m_pView;
  QWidget* m_pPage = nullptr;  // holds the helper's window, where it can be embedded
  QUrl m_URL;                  // of the page that is wanted, empty for none
  bool m_bLoaded = false;
  bool m_bGivenUp = false;
};
