// What is asked about target memory, and when the answer will do.

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryFile>
#include <QTest>

#include "shell/settings/settings_cache.h"
#include "ui/generic_memory_dialog.h"

using namespace Qt::StringLiterals;

class CGenericMemoryDialogTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void initTestCase() {
    SetSettingsInMemory(true);
    QVERIFY(m_File.open());
  }

  void onlyUsableAnswersAreTaken() {
    // What is typed, in the order of the dialog, with the name of a file that exists; the answer, empty if it is
    // refused.
    const std::tuple<MEMORY_DIALOG_MODES, QString, QString> Rows[] = {
        {MEMORY_DIALOG_LOAD, u"FILE|0x20000000"_s, u"FILE 20000000"_s},
        {MEMORY_DIALOG_LOAD, u"FILE| 100 "_s, u"FILE 100"_s},  // always hexadecimal
        {MEMORY_DIALOG_LOAD, u"/none/x.bin|0"_s, {}},
        {MEMORY_DIALOG_LOAD, u"FILE|main"_s, {}},
        {MEMORY_DIALOG_LOAD, u"FILE|0x100000000"_s, {}},
        {MEMORY_DIALOG_SAVE, u"/none/x.bin|8000000|0x10"_s, u"/none/x.bin 8000000 16"_s},
        {MEMORY_DIALOG_SAVE, u"|0|1"_s, {}},
        {MEMORY_DIALOG_SAVE, u"/none/x.bin|0|0"_s, {}},
        {MEMORY_DIALOG_FILL, u"20000000|100|0xFF"_s, u"20000000 100 255"_s},
        {MEMORY_DIALOG_FILL, u"20000000|100|256"_s, {}},
        {MEMORY_DIALOG_FILL, u"20000000|100|-1"_s, {}}};
    for (const auto& [Mode, sTyped, sAnswer] : Rows) {
      const QStringList Lines = QString(sTyped).replace(u"FILE"_s, m_File.fileName()).split(u'|');
      CGenericMemoryDialog Dialog(nullptr, Mode);
      Dialog.show();
      const QList<QLineEdit*> Edits = Dialog.findChildren<QLineEdit*>();
      QCOMPARE(Edits.size(), Lines.size());
      for (qsizetype i = 0; i < Lines.size(); ++i) Edits[i]->setText(Lines[i]);
      const bool bOk = Dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
      QTest::keyClick(&Dialog, Qt::Key_Return);
      QCOMPARE(Dialog.result() == QDialog::Accepted, bOk);
      QStringList Taken;
      if (Mode != MEMORY_DIALOG_FILL) Taken << Dialog.File();
      Taken << QString::number(Dialog.Addr(), 16);
      if (Mode != MEMORY_DIALOG_LOAD) Taken << QString::number(Dialog.Size());
      if (Mode == MEMORY_DIALOG_FILL) Taken << QString::number(Dialog.Value());
      QCOMPARE(bOk ? Taken.join(u' ') : QString(), QString(sAnswer).replace(u"FILE"_s, m_File.fileName()));
    }
  }

  void theFileOfAQuestionIsFixed() {
    CGenericMemoryDialog Dialog(nullptr, MEMORY_DIALOG_LOAD);
    Dialog.SetFile(m_File.fileName(), true);
    QCOMPARE(Dialog.findChild<QLineEdit*>()->text(), m_File.fileName());
    QVERIFY(Dialog.findChild<QLineEdit*>()->isReadOnly());
    for (const QLabel* const pLabel : Dialog.findChildren<QLabel*>()) QVERIFY(pLabel->buddy() != nullptr);
  }

private:
  QTemporaryFile m_File;
};

QTEST_MAIN(CGenericMemoryDialogTest)
#include "generic_memory_dialog_test.moc"
