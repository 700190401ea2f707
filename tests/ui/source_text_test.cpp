// A source file without its window: its bytes, its encoding and its line ends.

#include <QTemporaryDir>
#include <QTest>

#include "tests/common/write_file.h"
#include "ui/windows/source_document.h"

using namespace Qt::StringLiterals;

class CSourceTextTest : public QObject {
  Q_OBJECT

private Q_SLOTS:
  void bytesBecomeTextAndComeBack() {
    const auto Utf16 = [](const char* pBytes, qsizetype Size) { return QByteArray(pBytes, Size); };
    // Bytes, their text, its encoding, and whether a mark is ahead of it.
    const std::tuple<QByteArray, QString, QStringConverter::Encoding, bool> aRows[] = {
        {"/* \xC3\xBC */", QStringLiteral(u"/* ü */"), QStringConverter::Utf8, false},
        {"\xEF\xBB\xBFint x;", u"int x;"_s, QStringConverter::Utf8, true},
        {"/* \xFC */", QStringLiteral(u"/* ü */"), QStringConverter::Latin1, false},
        {"// \xC3", QStringLiteral(u"// Ã"), QStringConverter::Latin1, false},  // ends within a character
        {QByteArray(), QString(), QStringConverter::Utf8, false},
        {Utf16("\xFF\xFE\xFC\0x\0", 6), QStringLiteral(u"üx"), QStringConverter::Utf16LE, true},
        {Utf16("\xFE\xFF\0\xFC\0x", 6), QStringLiteral(u"üx"), QStringConverter::Utf16BE, true},
        {Utf16("i\0n\0t\0", 6), u"int"_s, QStringConverter::Utf16LE, false},
        {Utf16("\0i\0n\0t", 6), u"int"_s, QStringConverter::Utf16BE, false},
        {Utf16("\xFF\xFE\0\xD8x\0", 6), QString(QChar(0xD800)) + u'x', QStringConverter::Utf16LE, true},  // half a pair
        {"\xFF\xFEi", QStringLiteral(u"ÿþi"), QStringConverter::Latin1, false},  // half a character
    };
    for (const auto& [Bytes, sDecoded, Codec, bMark] : aRows) {
      SOURCE_ENCODING Encoding;
      const QString sText = DecodeSource(Bytes, &Encoding);
      QCOMPARE(sText, sDecoded);
      QCOMPARE(Encoding, (SOURCE_ENCODING{Codec, bMark}));
      QByteArray Again;
      QVERIFY(EncodeSource(sText, Encoding, &Again));
      QCOMPARE(Again, Bytes);
    }
  }

  void aFileKeepsItsLineEndsAndItsEncoding() {
    QTemporaryDir Dir;
    const std::tuple<QByteArray, QString, QByteArray> Rows[] = {
        {"a\r\nb\r\n", u"a\nc\nb\n"_s, "a\r\nc\r\nb\r\n"},
        {"a\rb\r", u"a\nb\nc\n"_s, "a\rb\rc\r"},
        {"a", u"a\nb"_s, "a\nb"},
        {"\xFC\n", QStringLiteral(u"üü\n"), "\xFC\xFC\n"},
        {"\xFC\n", QStringLiteral(u"ü€\n"), "\xC3\xBC\xE2\x82\xAC\n"},  // Latin-1 has no such sign
        {QByteArray("\xFF\xFEi\0\r\0\n\0", 8), u"i\n\n"_s, QByteArray("\xFF\xFEi\0\r\0\n\0\r\0\n\0", 12)},
    };
    for (const auto& [Bytes, sText, Expected] : Rows) {
      const QString sPath = WriteFile(Dir.filePath(u"x.c"_s), Bytes);
      SOURCE_DOCUMENT Document = LoadSourceDocument(sPath);
      QString sReason;
      QVERIFY(WriteSourceDocument(Document, sText, &sReason));
      QCOMPARE(ReadFile(sPath), Expected);
      QVERIFY(!HasChangedOutside(Document));
      QCOMPARE(QDir(Dir.path()).entryList(QDir::Files), QStringList{u"x.c"_s});
    }
  }

  void lineEndsAreDetected() {
    const std::pair<QString, EOL_FORMAT> Rows[] = {
        {u"a\r\nb\nc\r\n"_s, EOL_MIXED},
        {u"a"_s, EOL_MAC},
        {QString(), EOL_MAC},
        {u"\na\r\nb\r\n"_s, EOL_WINDOWS},                // a line feed in front does not count
        {u"a\n"_s.repeated(9) + u"a\r\n"_s, EOL_MIXED},  // the tenth does, the eleventh does not
        {u"a\n"_s.repeated(10) + u"a\r\n"_s, EOL_UNIX},
    };
    for (const auto& [sText, Format] : Rows) QVERIFY2(DetectLineEnding(sText) == Format, qPrintable(sText));
  }
};

QTEST_MAIN(CSourceTextTest)
#include "source_text_test.moc"
