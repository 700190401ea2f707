#pragma once
// What the tests of the settings dialogs share: a saved project, inputs by name, and the question about storing.

#include <QAbstractSpinBox>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include "project/project.h"
#include "session.h"
#include "tests/common/write_file.h"
#include "ui/message_box.h"

// One input of a dialog by its object name, and what the user makes of it: a list's entry or text, a number, "on" or
// "off".
using INPUT = std::pair<const char*, QString>;

inline void SetInput(QWidget* pDialog, const INPUT& Input) {
  auto* const pInput = pDialog->findChild<QWidget*>(QLatin1String(Input.first));
  QVERIFY2(pInput && pInput->isVisible() && pInput->isEnabled(), Input.first);
  auto* const pCombo = qobject_cast<QComboBox*>(pInput);
  if (auto* const pBox = qobject_cast<QCheckBox*>(pInput)) {
    if (pBox->isChecked() != (Input.second == "on")) QTest::keyClick(pBox, Qt::Key_Space);
    QCOMPARE(pBox->isChecked(), Input.second == "on");
  } else if (pCombo && !pCombo->isEditable()) {
    QVERIFY2(SelectByKeys(pCombo, Input.second), qPrintable(Input.second));
  } else {
    QTest::keyClick(pInput, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(pInput, Qt::Key_Delete);
    QTest::keyClicks(pInput, Input.second);
  }
}

inline QPushButton* OkButton(const QWidget* pDialog) {
  return pDialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
}

// Every label leads to an input, and no two to the same key.
inline void CheckMnemonics(const QWidget* pDialog) {
  QStringList Texts;
  for (const QLabel* const pLabel : pDialog->findChildren<QLabel*>()) {
    if (pLabel->buddy()) Texts << pLabel->text();
    QVERIFY2(!pLabel->text().endsWith(u':') || pLabel->buddy(), qPrintable(pLabel->text()));
  }
  for (const QCheckBox* const pBox : pDialog->findChildren<QCheckBox*>()) Texts << pBox->text();
  QMap<QChar, QString> Taken;
  for (const QString& sText : Texts) {
    const qsizetype Pos = sText.indexOf(u'&');
    QVERIFY2(Pos >= 0, qPrintable(sText));
    const QString sOther = std::exchange(Taken[sText[Pos + 1].toLower()], sText);
    QVERIFY2(sOther.isNull(), qPrintable(QString(sText + QStringLiteral(" and ") + sOther)));
  }
}

// Answers the question whether to store, and keeps what was asked.
class CStoreQuestion {
public:
  explicit CStoreQuestion(bool bYes) {
    CMessageBox::SetResponder([this, bYes](const QString& sTitle, const QString& sText, int) {
      m_Asked << sTitle + QStringLiteral(": ") + sText;
      return bYes ? CMessageBox::ACCEPTED : CMessageBox::DECLINED;
    });
  }
  ~CStoreQuestion() { CMessageBox::SetResponder(nullptr); }
  const QStringList& Asked() const { return m_Asked; }

private:
  QStringList m_Asked;
};

// A project that is open in the program and lies in a file.
class CSavedProject {
public:
  // The lines of its OnProjectLoad.
  void Open(const QStringList& Commands) {
    m_sPath = m_Dir.filePath("p.vdebug");
    WriteFile(m_sPath, "void OnProjectLoad (void) {\n  " + Commands.join("\n  ").toUtf8() + "\n}\n");
    QSignalSpy Opened(&CProject::Get(), &CProject::Opened);
    CProject::Get().Open(m_sPath);
    QVERIFY(Opened.wait(FRAME_WAIT_MS));
    CDevice::Get().WaitForJob(JT_SET_CONFIG_PARAM, true);
  }
  // What stands in the file now.
  QStringList Commands() const {
    QStringList Lines;
    for (const QByteArray& sLine : ReadFile(m_sPath).split('\n')) {
      const QString sText = QString::fromUtf8(sLine).trimmed();
      if (sText.endsWith(u';')) Lines << sText;
    }
    return Lines;
  }
  const QString& Path() const { return m_sPath; }

private:
  QTemporaryDir m_Dir;
  QString m_sPath;
};
