#pragma once
// What a user does in a modal dialog, while the call that shows it is waiting.

#include <functional>

#include <QApplication>
#include <QComboBox>
#include <QDeadlineTimer>
#include <QPointer>
#include <QTest>
#include <QTimer>

inline constexpr int DRIVE_LIMIT_MS = 20000;

// Runs Drive once Find gives a widget, and closes that widget if Drive has not. To be called before what shows it.
inline void WhenShown(const std::function<QWidget*()>& Find, const std::function<void(QWidget*)>& Drive) {
  auto* const pTimer = new QTimer(qApp);
  const QDeadlineTimer Limit(DRIVE_LIMIT_MS);
  QObject::connect(pTimer, &QTimer::timeout, qApp, [=] {
    const QPointer<QWidget> pFound = Find();
    if (!pFound && !Limit.hasExpired()) return;
    pTimer->stop();
    pTimer->deleteLater();
    if (!pFound) return QTest::qFail("no dialog was shown", __FILE__, __LINE__);
    Drive(pFound);
    if (pFound) pFound->close();
  });
  pTimer->start(1);
}

// The next modal dialog, which may be one over another.
inline void WhenModal(const std::function<void(QWidget*)>& Drive) {
  const QPointer<QWidget> pBefore = QApplication::activeModalWidget();
  WhenShown(
      [pBefore] {
        QWidget* const pModal = QApplication::activeModalWidget();
        return pModal != pBefore && pModal && pModal->isVisible() ? pModal : nullptr;
      },
      Drive);
}

inline void WhenPopup(const std::function<void(QWidget*)>& Drive) {
  WhenShown([] { return QApplication::activePopupWidget(); }, Drive);
}

// Moves in a list by keys until it shows a text. False when it has none such.
inline bool SelectByKeys(QComboBox* pBox, const QString& sText) {
  QTest::keyClick(pBox, Qt::Key_Home);
  for (int i = 0; i < pBox->count() && pBox->currentText() != sText; ++i) QTest::keyClick(pBox, Qt::Key_Down);
  return pBox->currentText() == sText;
}

inline void TypeOver(QWidget* pInput, const QString& sText) {
  QTest::keyClick(pInput, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(pInput, sText);
  QTest::keyClick(pInput, Qt::Key_Return);
}
