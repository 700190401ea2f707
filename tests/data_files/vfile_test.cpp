#include "device/data_files/vfile.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "base/msg_flags.h"
#include "program/elf/elf.h"
#include "record_rules.h"
#include "tests/common/files.h"

namespace {

using namespace Qt::StringLiterals;
using VFile::CFileWorker;

const QString DATA_DIR = QStringLiteral(VEXOR_SOURCE_DIR "/tests/database/data/");

class VFileTest : public testing::Test {
protected:
  void SetUp() override {
    CFileWorker::Get()->SetMessageSink([this](const QString& sText, U32 Flags) { m_Messages.append({sText, Flags}); });
  }
  void TearDown() override {
    CFileWorker::Get()->SetMessageSink({});
    CFileWorker::Get()->SetProgressSink({});
  }

  QString Write(const QString& sName, const QByteArray& Bytes) { return WriteBytes(m_Dir.filePath(sName), Bytes); }
  QMemBlocks Read(const QString& sName, const QByteArray& Bytes) {
    return CFileWorker::Get()->ReadDataFile(Write(sName, Bytes));
  }
  bool HasError(const QString& sPart) const {
    return std::any_of(m_Messages.begin(), m_Messages.end(), [&](const auto& Message) {
      return (Message.second & MSG_ERROR) && Message.first.contains(sPart);
    });
  }

  QTemporaryDir m_Dir;
  QList<std::pair<QString, U32>> m_Messages;
};

TEST_F(VFileTest, TellsClassesByNameAndFirstBytes) {
  const QByteArray Identification(
      "\x7F"
      "ELF\1\1\1\0\0\0\0\0more",
      16);
  const std::tuple<const char*, QByteArray, VFile::FILE_CLASS> aCases[] = {
      {"a.elf", "no elf", VFile::FILE_CLASS_ELF},
      {"a.axf", "", VFile::FILE_CLASS_ELF},
      {"a.b.out", "", VFile::FILE_CLASS_ELF},
      {"a.HEX", "", VFile::FILE_CLASS_NONE},
      {"a.txt", "", VFile::FILE_CLASS_NONE},
      {"plain", Identification.first(4), VFile::FILE_CLASS_NONE},
      {"program", Identification, VFile::FILE_CLASS_ELF},
  };
  for (const auto& [sName, Bytes, Class] : aCases)
    EXPECT_EQ(VFile::GetFileClass(Write(QLatin1String(sName), Bytes)), Class) << sName;
  EXPECT_EQ(VFile::GetFileClass(m_Dir.path()), VFile::FILE_CLASS_NONE);
  EXPECT_EQ(VFile::GetFileClass(m_Dir.filePath(u"absent.bin"_s)), VFile::FILE_CLASS_NONE);
}

TEST_F(VFileTest, ReadsBinaryFilesAcrossPieces) {
  const QByteArray Bytes = QByteArray(1000000, 'a') + QByteArray(1000000, 'b') + "end";
  const QString sPath = Write(u"big.bin"_s, Bytes);
  QList<int> Values;
  bool bEnded = false;
  PROGRESS_SINK Progress;
  Progress.Start = [&](const QString& sText, int Min, int Max) {
    EXPECT_EQ(sText, u"Reading File..."_s);
    Values = {Min, Max};
  };
  Progress.SetValue = [&](int Value) { Values.append(Value); };
  Progress.End = [&] { bEnded = true; };
  CFileWorker::Get()->SetProgressSink(Progress);
  const QMemBlocks Blocks = CFileWorker::Get()->ReadDataFile(sPath, 0x08004000);
  ASSERT_EQ(Blocks.size(), 1);
  EXPECT_EQ(Blocks[0].Addr, 0x08004000u);
  EXPECT_TRUE(Blocks[0].Data == Bytes);
  EXPECT_EQ(Values, (QList<int>{0, 2000003, 1000000, 2000000, 2000003, 2000003}));
  EXPECT_TRUE(bEnded);
  EXPECT_EQ(Read(u"empty.bin"_s, "").size(), 1);
}

TEST_F(VFileTest, SegmentsOfTheProgram) {
  ELF_FILE* pElf = ELF_Open((DATA_DIR + u"demo.elf"_s).toUtf8());
  ASSERT_NE(pElf, nullptr);
  CFileWorker::Get()->SetProgram(CFileWorker::Get()->ReadSegments(pElf));
  const QMemBlocks Elf = CFileWorker::Get()->ReadDataFile(DATA_DIR + u"demo.elf"_s);
  CFileWorker::Get()->SetProgram({});
  ELF_Close(pElf);
  ASSERT_EQ(Elf.size(), 2);
  EXPECT_EQ(Elf[0].Data, ReadBytes(DATA_DIR + u"demo.bin"_s));
  EXPECT_EQ(Elf[1].VirtAddr, 0x20000000u);
  EXPECT_TRUE(m_Messages.contains({QStringLiteral("Virtual segment address differs from physical address by 17fffd90 "
                                                  "bytes"),
                                   MSG_INFO | MSG_TO_STDOUT | MSG_TO_FILE}));
  EXPECT_TRUE(CFileWorker::Get()->ReadDataFile(DATA_DIR + u"demo.elf"_s).isEmpty());
}

TEST_F(VFileTest, RefusesFilesWithCorruptRecords) {
  const auto SREC = std::pair(u"a.srec"_s, QByteArray("S1041000AA41\n"));
  const auto HEX = std::pair(u"a.hex"_s, QByteArray(":01001000AA45\n"));
  // what is wrong, the name of such a file and a good line of it, the bad line
  const std::tuple<const char*, std::pair<QString, QByteArray>, const char*> aCases[] = {
      {"bad checksum", SREC, "S1041000AA42"},
      {"bad count", SREC, "S1051000AA40"},
      {"reserved type 4", SREC, "S4041000AA41"},
      {"type that is no digit", SREC, "Sx041000AA41"},
      {"no digit in the data", SREC, "S1041000AG41"},
      {"cut short", SREC, "S10410"},
      {"address longer than record", SREC, "S3041000AA41"},
      {"other format", SREC, ":01001000AA45"},
      {"bad checksum", HEX, ":01001000AA46"},
      {"bad count", HEX, ":02001000AA44"},
      {"unknown type", HEX, ":00000006FA"},
      {"long type", HEX, ":01001010AA35"},
      {"base at an offset", HEX, ":020001040800F1"},
      {"short base", HEX, ":0100000408F3"},
      {"end with data", HEX, ":01000001AA54"},
  };
  for (const auto& [sWhat, Good, sBad] : aCases) {
    m_Messages.clear();
    EXPECT_TRUE(Read(Good.first, Good.second + sBad + "\n" + Good.second).isEmpty()) << sWhat;
    EXPECT_TRUE(HasError(u"file contains corrupt data record at line 1."_s)) << sWhat;
  }
}

TEST_F(VFileTest, ParsesLinesAcrossPieceBoundaries) {
  // 44-character lines: a million bytes end inside one of them.
  QByteArray Records, Image;
  const auto Hex = [](int Value) { return QByteArray::number(Value, 16).rightJustified(4, '0'); };
  for (int i = 0; i < 60000; ++i) {
    if (i % 4096 == 0) Records += ":00000004" + Hex(i / 4096) + "00\n";
    QByteArray Data;
    for (int k = 0; k < 16; ++k) Data += char(i * 7 + k);
    Image += Data;
    Records += ":00" + Hex(i * 16 & 0xFFFF) + "00" + Data.toHex() + "00\n";
  }
  Records = RepairRecords(Records, VFile::FILE_CLASS_HEX);
  ASSERT_GT(Records.size(), 2000000);
  const QMemBlocks Blocks = Read(u"big.hex"_s, Records);
  ASSERT_EQ(Blocks.size(), 1);
  EXPECT_EQ(Blocks[0].Addr, 0u);
  EXPECT_TRUE(Blocks[0].Data == Image);
  // Half of the file: the line that was cut is not read, all before it is.
  const QMemBlocks Half = Read(u"half.hex"_s, Records.left(1500007));
  ASSERT_EQ(Half.size(), 1);
  EXPECT_TRUE(Image.startsWith(Half[0].Data));
  EXPECT_GT(Half[0].NumBytes, 500000u);
  // One line without end of more than a piece.
  EXPECT_TRUE(Read(u"line.hex"_s, QByteArray(1500000, '0')).isEmpty());
}

TEST_F(VFileTest, SavesAndReportsFailure) {
  QString sSaved;
  const auto Connection =
      QObject::connect(CFileWorker::Get(), &CFileWorker::FileSaved,
                       [&](const QString& sPath, U32 NumBytes) { sSaved = u"%1 %2"_s.arg(sPath).arg(NumBytes); });
  const QByteArray Bytes(2500000, 'x');
  const QString sPath = m_Dir.filePath(u"out.bin"_s);
  EXPECT_EQ(CFileWorker::Get()->SaveFile(sPath, Bytes.constData(), static_cast<U32>(Bytes.size())), 0);
  EXPECT_TRUE(ReadBytes(sPath) == Bytes);
  EXPECT_EQ(sSaved, sPath + u" 2500000"_s);
  sSaved.clear();
  EXPECT_EQ(CFileWorker::Get()->SaveFile(m_Dir.filePath(u"no/dir.bin"_s), "abc", 3), -1);
  EXPECT_TRUE(sSaved.isEmpty());
  QObject::disconnect(Connection);
}

// Program files that were damaged: the sizes in their headers are not to be believed.
TEST_F(VFileTest, SegmentsOfDamagedProgramsStayInsideTheFile) {
  const QByteArray Good = ReadBytes(DATA_DIR + u"demo.elf"_s);
  const auto SegmentsOf = [&](const QByteArray& Bytes) {
    ELF_FILE* pElf = ELF_Open(Write(u"damaged.elf"_s, Bytes).toUtf8());
    const QMemBlocks Blocks = CFileWorker::Get()->ReadSegments(pElf);
    if (pElf) ELF_Close(pElf);
    return Blocks;
  };
  const qsizetype FirstHeader = 52, SegmentFileSize = 16, SegmentOffset = 4;
  for (const auto& [Offset, Value] : {std::pair<qsizetype, QByteArray>{SegmentFileSize, "ffffffff"},
                                      {SegmentFileSize, "00000100"},
                                      {SegmentOffset, "f0ffffff"}}) {
    QByteArray Bytes = Good;
    Bytes.replace(FirstHeader + Offset, 4, QByteArray::fromHex(Value));
    const QMemBlocks Blocks = SegmentsOf(Bytes);
    ASSERT_LE(Blocks.size(), 2);
    for (const CMemBlock& Block : Blocks) {
      EXPECT_EQ(Block.NumBytes, static_cast<U32>(Block.Data.size()));
      EXPECT_LE(Block.Data.size(), Good.size());
    }
  }
  for (qsizetype Size = 0; Size < Good.size(); Size += 1499) {
    for (const CMemBlock& Block : SegmentsOf(Good.left(Size))) EXPECT_LE(Block.Data.size(), Size);
  }
}

}  // namespace
