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

  void onlyUsableAnswersAreTaken_data() {
    QTest::addColumn<int>("Mode");
    QTest::addColumn<QStringList>("Lines");  // in the order of the dialog; "FILE" is one that exists
    QTest::addColumn<QString>("Answer");     // empty: refused
    const auto Row = [](const char* sName, MEMORY_DIALOG_MODES Mode, const char* sLines, const char* sAnswer) {
      QTest::newRow(sName) << static_cast<int>(Mode) << QString::fromLatin1(sLines).split(u'|')
                           << QString::fromLatin1(sAnswer);
    };
    Row("load", MEMORY_DIALOG_LOAD, "FILE|0x20000000", "FILE 20000000");
    Row("load: always hexadecimal", MEMORY_DIALOG_LOAD, "FILE| 100 ", "FILE 100");
    Row("load: no such file", MEMORY_DIALOG_LOAD, "/none/x.bin|0", "");
    Row("load: no number", MEMORY_DIALOG_LOAD, "FILE|main", "");
    Row("load: past the address space", MEMORY_DIALOG_LOAD, "FILE|0x100000000", "");
    Row("save: to a new file", MEMORY_DIALOG_SAVE, "/none/x.bin|8000000|0x10", "/none/x.bin 8000000 16");
    Row("save: to no file", MEMORY_DIALOG_SAVE, "|0|1", "");
    Row("save: nothing", MEMORY_DIALOG_SAVE, "/none/x.bin|0|0", "");
    Row("fill", MEMORY_DIALOG_FILL, "20000000|100|0xFF", "20000000 100 255");
    Row("fill: more than a byte", MEMORY_DIALOG_FILL, "20000000|100|256", "");
    Row("fill: below zero", MEMORY_DIALOG_FILL, "20000000|100|-1", "");
  }

  void onlyUsableAnswersAreTaken() {
    QFETCH(int, Mode);
    QFETCH(QStringList, Lines);
    QFETCH(QString, Answer);
    Lines.replaceInStrings(u"FILE"_s, m_File.fileName());
    CGenericMemoryDialog Dialog(nullptr, static_cast<MEMORY_DIALOG_MODES>(Mode));
    Dialog.show();
    const QList<QLineEdit*> Edits = Dialog.findChildren<QLineEdit*>();
    QCOMPARE(Edits.size(), Lines.size());
    for (qsizetype i = 0; i < Lines.size(); ++i) Edits[i]->setText(Lines[i]);
    QPushButton* const pOk = Dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
    QCOMPARE(pOk->isEnabled(), !Answer.isEmpty());
    QTest::keyClick(&Dialog, Qt::Key_Return);
    QCOMPARE(Dialog.result() == QDialog::Accepted, !Answer.isEmpty());
    if (Answer.isEmpty()) return;
    QStringList Taken;
    if (Mode != MEMORY_DIALOG_FILL) Taken << Dialog.File();
    Taken << QString::number(Dialog.Addr(), 16);
    if (Mode != MEMORY_DIALOG_LOAD) Taken << QString::number(Dialog.Size());
    if (Mode == MEMORY_DIALOG_FILL) Taken << QString::number(Dialog.Value());
    QCOMPARE(Taken.join(u' '), Answer.replace(u"FILE"_s, m_File.fileName()));
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
