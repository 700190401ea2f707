// How the bytes of a source file become text.

#include <QTest>

#include "ui/windows/source_document.h"

using namespace Qt::StringLiterals;

class CSourceDocumentTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void BytesBecomeText_data() {
    QTest::addColumn<QByteArray>("Bytes");
    QTest::addColumn<QString>("sText");
    QTest::newRow("UTF-8") << QByteArray("/* \xC3\xBC */") << QStringLiteral(u"/* ü */");
    QTest::newRow("UTF-8 with its mark") << QByteArray("\xEF\xBB\xBFint x;") << u"int x;"_s;
    QTest::newRow("Latin-1") << QByteArray("/* \xFC */") << QStringLiteral(u"/* ü */");
    QTest::newRow("Latin-1 at the very end") << QByteArray("// \xC3") << QStringLiteral(u"// Ã");
    QTest::newRow("empty") << QByteArray() << QString();
  }

  void BytesBecomeText() {
    QFETCH(QByteArray, Bytes);
    QFETCH(QString, sText);
    QCOMPARE(DecodeSource(Bytes), sText);
  }
};

QTEST_MAIN(CSourceDocumentTest)
#include "source_document_test.moc"
