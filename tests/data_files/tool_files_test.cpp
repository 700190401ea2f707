// Files as other tools write them: what is read is what the tools themselves read from them.

#include <gtest/gtest.h>

#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include "device/data_files/vfile.h"
#include "record_rules.h"
#include "tests/common/files.h"

namespace {

using namespace Qt::StringLiterals;

constexpr char GAP = '\xEE';  // stands for what a file does not hold
constexpr qsizetype SLACK_BYTES = 64;

bool RunTool(const QString& sProgram, const QString& sArguments) {
  QProcess Process;
  Process.setProcessChannelMode(QProcess::MergedChannels);
  Process.start(sProgram, sArguments.split(u' ', Qt::SkipEmptyParts));
  const bool bDone = Process.waitForFinished() && Process.exitCode() == 0;
  EXPECT_TRUE(bDone) << (sProgram + u' ' + sArguments).toStdString() << Process.readAll().toStdString();
  return bDone;
}

class ToolFiles : public testing::Test {
protected:
  // The file's bytes from Base on, GAP where there are none.
  QByteArray ReadHere(const QString& sFile, quint32 Base, qsizetype Span) {
    QByteArray Image(Span, GAP);
    for (const CMemBlock& Block : VFile::CFileWorker::Get()->ReadDataFile(Path(sFile))) {
      const qint64 At = qint64{Block.Addr} - Base;
      EXPECT_TRUE(At >= 0 && At + Block.Data.size() <= Span) << Block.Addr;
      if (At >= 0 && At + Block.Data.size() <= Span) Image.replace(At, Block.Data.size(), Block.Data);
    }
    return Image;
  }
  QByteArray ReadByTool(const QString& sFile, quint32 Base, qsizetype Span) {
    const QString sFormat = sFile.endsWith(u"hex"_s) ? u"-intel"_s : u"-motorola"_s;
    RunTool(u"srec_cat"_s, u"%1 %2 -offset -%3 -fill 0xEE 0 %4 -o %5 -binary"_s.arg(Path(sFile), sFormat)
                               .arg(Base)
                               .arg(Span)
                               .arg(Path(u"reference"_s)));
    return ReadBytes(Path(u"reference"_s));
  }
  QString Path(const QString& sName) const { return m_Dir.filePath(sName); }
  QTemporaryDir m_Dir;
};

TEST_F(ToolFiles, HoldWhatTheToolsReadFromThem) {
  const QString sElf = QStringLiteral(VEXOR_SOURCE_DIR "/tests/database/data/demo.elf");
  const QString sObjcopy = u"arm-none-eabi-objcopy"_s;
  const QString sBin = Path(u"image.bin"_s);
  ASSERT_TRUE(RunTool(sObjcopy, u"-O binary %1 %2"_s.arg(sElf, sBin)));
  const QByteArray Image = ReadBytes(sBin);
  ASSERT_GT(Image.size(), 500);
  // The file, where the image begins in it, whether it has no holes, the tool and its arguments: %1 is the program, %2
  // its image, %3 the file.
  const std::tuple<const char*, quint32, bool, const char*, const char*> aCases[] = {
      {"a.srec", 0x08000000, true, "objcopy", "-O srec %1 %3"},
      {"b.mot", 0x08000000, true, "objcopy", "-O srec --srec-len=7 --srec-forceS3 %1 %3"},
      {"c.srec", 0, true, "objcopy", "-O srec --change-addresses -0x08000000 %1 %3"},
      {"d.srec", 0x120000, true, "objcopy", "-O srec --change-addresses -0x07EE0000 %1 %3"},
      {"e.hex", 0x08000000, true, "objcopy", "-O ihex %1 %3"},
      {"f.hex", 0x0800FF00, true, "objcopy", "-O ihex --change-addresses 0xFF00 %1 %3"},
      {"g.hex", 0xFFF0, true, "objcopy", "-O ihex --change-addresses -0x07FF0010 %1 %3"},
      {"h.srec", 0x100, true, "srec_cat", "%2 -binary -offset 0x100 -o %3 -motorola -address-length=2"},
      {"i.srec", 0xFFFF00, true, "srec_cat", "%2 -binary -offset 0xFFFF00 -o %3 -motorola -line-length=24"},
      {"j.mot", 0xFFFFFC00, true, "srec_cat", "%2 -binary -offset 0xFFFFFC00 -o %3 -motorola -obs=1"},
      {"k.srec", 0x08000000, true, "srec_cat",
       "%2 -binary -offset 0x8000000 -o %3 -motorola -line-termination=crlf -execution-start-address=0x8000009"},
      {"l.hex", 0x0FFF0, true, "srec_cat",
       "%2 -binary -offset 0xFFF0 -o %3 -intel -address-length=3 -execution-start-address=0x10001"},
      {"m.hex", 0x0800FFF8, true, "srec_cat",
       "%2 -binary -offset 0x800FFF8 -o %3 -intel -obs=255 -execution-start-address=0x8000009"},
      {"n.hex", 0x20000000, false, "srec_cat", "%2 -binary -unfill 0 2 -offset 0x20000000 -o %3 -intel"},
      {"o.srec", 0x20000000, false, "srec_cat",
       "%2 -binary -crop 1 2 0x10 0x21 0x100 0x133 -offset 0x20000000 -o %3 -motorola -disable=header"},
      {"p.hex", 0x08000000, false, "srec_cat", "%2 -binary -exclude 0x20 0x21 -offset 0x8000000 -o %3 -intel -obs=3"},
  };
  for (const auto& [sName, Base, bWhole, sTool, sOptions] : aCases) {
    SCOPED_TRACE(sName);
    const QString sFile = QLatin1String(sName);
    QString sArguments = QLatin1String(sOptions);
    sArguments.replace(u"%1"_s, sElf).replace(u"%2"_s, sBin).replace(u"%3"_s, Path(sFile));
    if (!RunTool(sTool == "objcopy"_L1 ? sObjcopy : QString::fromLatin1(sTool), sArguments)) continue;
    const qsizetype Span = Image.size() + SLACK_BYTES;
    const QByteArray Here = ReadHere(sFile, Base, Span);
    EXPECT_EQ(Here, ReadByTool(sFile, Base, Span));
    EXPECT_EQ(bWhole, Here.startsWith(Image));
    EXPECT_NE(Here, QByteArray(Span, GAP));
  }
  // The order of S-records is free.
  QByteArrayList Lines = ReadBytes(Path(u"a.srec"_s)).replace('\r', QByteArray()).trimmed().split('\n');
  std::reverse(Lines.begin(), Lines.end());
  WriteBytes(Path(u"turned.srec"_s), Lines.join('\n') + '\n');
  EXPECT_EQ(ReadHere(u"turned.srec"_s, 0x08000000, Image.size()), Image);
}

// Random lines with good counts and checksums, many of which overlap, and the same cut and garbled.
TEST(RandomRecords, KeepTheRules) {
  QRandomGenerator Random(4711);
  for (int i = 0; i < 3000; ++i) {
    const VFile::FILE_CLASS Class = i % 2 ? VFile::FILE_CLASS_HEX : VFile::FILE_CLASS_SREC;
    QByteArray Text;
    for (int Line = Random.bounded(1, 12); Line > 0; --Line) {
      const QByteArray Low = QByteArray::number(Random.bounded(0x100, 0x140), 16).rightJustified(4, '0');
      QByteArray Data;
      for (int k = Random.bounded(0, 20); k > 0; --k)
        Data += QByteArray(1, static_cast<char>(Random.generate())).toHex();
      const char* sKind = Class == VFile::FILE_CLASS_SREC ? "012357899" : "000001245";
      const char Kind = sKind[Random.bounded(9)];
      if (Class == VFile::FILE_CLASS_SREC) {
        Text += 'S' + QByteArray(1, Kind) + "00" + (Kind == '3' ? "0000" : Kind == '2' ? "00" : "") + Low + Data + "00";
      } else {
        Text += ":00" + (Kind == '0' ? Low + "00" + Data : "00000" + QByteArray(1, Kind) + Low) + "00";
      }
      Text += Random.bounded(8) ? "\n" : "\r\n \n";
    }
    QByteArray Good = RepairRecords(Text.replace("\r\n \n", "\n"), Class);
    EXPECT_EQ(BrokenRecordRule(Good, Class), "") << Good.toStdString();
    Good[Random.bounded(static_cast<int>(Good.size()))] = static_cast<char>(Random.bounded(128));
    Good.truncate(Random.bounded(static_cast<int>(Good.size())) + 1);
    EXPECT_EQ(BrokenRecordRule(Good, Class), "") << Good.toStdString();
  }
}

// What no target has room for is refused, and a file that is none of records does not fill the console.
TEST_F(ToolFiles, HostileFilesAreRefusedAtOnce) {
  QStringList Messages;
  VFile::CFileWorker::Get()->SetMessageSink([&](const QString& sText, U32) { Messages << sText; });
  QByteArray Apart;
  for (quint32 i = 0; i <= 1'000'000; ++i) {
    const QByteArray Body = "06" + QByteArray::number(i * 4096ull & 0xFFFFFFFF, 16).rightJustified(8, '0') + "55";
    Apart += "S3" + Body + "00\n";
  }
  EXPECT_TRUE(VFile::CFileWorker::Get()
                  ->ReadDataFile(WriteBytes(Path(u"apart.srec"_s), RepairRecords(Apart, VFile::FILE_CLASS_SREC)))
                  .isEmpty());
  EXPECT_EQ(Messages.size(), 1);
  EXPECT_TRUE(Messages.value(0).endsWith(u": its data lies in more than 1000000 places."_s));
  Messages.clear();
  EXPECT_TRUE(VFile::CFileWorker::Get()
                  ->ReadDataFile(WriteBytes(Path(u"text.hex"_s), QByteArray(":no\n").repeated(500'000)))
                  .isEmpty());
  EXPECT_EQ(Messages.size(), 101);
  EXPECT_TRUE(Messages.last().endsWith(u"file contains corrupt data record at line 0."_s));
  // Beyond the end of the address space.
  const QMemBlocks End =
      VFile::CFileWorker::Get()->ReadDataFile(WriteBytes(Path(u"end.hex"_s), ":02000004FFFFFC\n:04FFFE00AABBCCDDF1\n"));
  ASSERT_EQ(End.size(), 1);
  EXPECT_EQ(End[0].Addr, 0xFFFFFFFEu);
  EXPECT_EQ(End[0].NumBytes, 4u);
  VFile::CFileWorker::Get()->SetMessageSink({});
}

}  // namespace
