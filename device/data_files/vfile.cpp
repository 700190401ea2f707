#include "device/data_files/vfile.h"

#include <QFile>
#include <QFileInfo>

#include "base/msg_flags.h"
#include "device/data_files/program_segments.h"
#include "device/data_files/record_file_reader.h"

namespace VFile {

namespace {

constexpr qint64 PIECE_BYTES = 1000000;
// A progress value is 32 bits wide.
constexpr qint64 MAX_FILE_BYTES = 0x7FFFFFFF;
// Each record takes several bytes of memory beside its data.
constexpr qint64 MAX_RECORD_FILE_BYTES = 1'000'000'000;

// Drives the progress bar for the time of one file operation.
class CFileProgress {
public:
  CFileProgress(const PROGRESS_SINK& Sink, const QString& sText, qint64 NumBytes) : m_Sink(Sink), m_NumBytes(NumBytes) {
    if (m_Sink.Start) m_Sink.Start(sText, 0, static_cast<int>(NumBytes));
  }
  ~CFileProgress() {
    SetValue(m_NumBytes);
    if (m_Sink.End) m_Sink.End();
  }
  void SetValue(qint64 Value) const {
    if (m_Sink.SetValue) m_Sink.SetValue(static_cast<int>(Value));
  }

private:
  const PROGRESS_SINK& m_Sink;
  qint64 m_NumBytes;
};

bool HasElfIdentification(const QString& sPath) {
  static const QByteArray Identification(
      "\x7f"
      "ELF\x01\x01\x01\0\0\0\0\0",
      12);
  QFile File(sPath);
  return File.open(QIODevice::ReadOnly) && File.read(Identification.size()) == Identification;
}

QByteArray ReadAll(QFile& File, const CFileProgress& Progress) {
  QByteArray Data;
  QByteArray Piece;
  do {
    Piece = File.read(PIECE_BYTES);
    Data += Piece;
    Progress.SetValue(File.pos());
  } while (Piece.size() == PIECE_BYTES);
  return Data;
}

CMemBlock BlockOf(const QByteArray& Data) {
  return {0, static_cast<U32>(Data.size()), 0, Data, {}};
}

}  // namespace

FILE_CLASS GetFileClass(const QString& sPath) {
  const QFileInfo Info(sPath);
  if (!Info.isFile()) return FILE_CLASS_NONE;
  static const QHash<QString, FILE_CLASS> Classes = {
      {QStringLiteral("bin"), FILE_CLASS_BINARY}, {QStringLiteral("elf"), FILE_CLASS_ELF},
      {QStringLiteral("out"), FILE_CLASS_ELF},    {QStringLiteral("axf"), FILE_CLASS_ELF},
      {QStringLiteral("mot"), FILE_CLASS_SREC},   {QStringLiteral("srec"), FILE_CLASS_SREC},
      {QStringLiteral("hex"), FILE_CLASS_HEX},
  };
  const QString sSuffix = Info.suffix();
  if (sSuffix.isEmpty()) return HasElfIdentification(sPath) ? FILE_CLASS_ELF : FILE_CLASS_NONE;
  return Classes.value(sSuffix, FILE_CLASS_NONE);
}

QMemBlocks MakeMemBlocks(U32 NumRecords, const MEM_RECORD* paRecords) {
  QMemBlocks Blocks;
  if (!paRecords) return Blocks;
  for (U32 i = 0; i < NumRecords; ++i) {
    const MEM_RECORD& Record = paRecords[i];
    const QByteArray Data = QByteArray::fromRawData(reinterpret_cast<const char*>(Record.pData), Record.NumBytes);
    Blocks.append({Record.Addr, Record.NumBytes, Record.VirtAddr, Data, {}});
  }
  return Blocks;
}

CFileWorker* CFileWorker::Get() {
  static CFileWorker Worker;
  return &Worker;
}

bool CFileWorker::Open(QFile& File, qint64 MaxBytes) const {
  if (File.size() <= MaxBytes && File.open(QIODevice::ReadOnly)) return true;
  if (m_Sink) m_Sink(QStringLiteral("could not open file \"%1\".").arg(File.fileName()), MSG_ERROR | MSG_TO_ALL);
  return false;
}

QByteArray CFileWorker::ReadBinaryFile(const QString& sPath) {
  QFile File(sPath);
  if (!Open(File, MAX_FILE_BYTES)) return {};
  return ReadAll(File, CFileProgress(m_Progress, QStringLiteral("Reading File..."), File.size()));
}

QMemBlocks CFileWorker::ReadDataFile(const QString& sPath, I64 DefaultAddr) {
  const FILE_CLASS Class = GetFileClass(sPath);
  if (Class == FILE_CLASS_NONE) return {};
  if (Class == FILE_CLASS_ELF) return ReadProgramSegments();
  const bool bBinary = Class == FILE_CLASS_BINARY;
  QFile File(sPath);
  if (!Open(File, bBinary ? MAX_FILE_BYTES : MAX_RECORD_FILE_BYTES)) return {};
  const CFileProgress Progress(m_Progress, QStringLiteral("Reading File..."), File.size());
  QMemBlocks Blocks =
      bBinary ? QMemBlocks{BlockOf(ReadAll(File, Progress))} : CRecordFileReader(Class, m_Progress, m_Sink).Read(File);
  const bool bPlaceable = Blocks.size() == 1 && (bBinary || Blocks[0].Addr == INVALID_ADDR) && DefaultAddr >= 0;
  if (bPlaceable && DefaultAddr <= UINT32_MAX) Blocks[0].Addr = Blocks[0].VirtAddr = static_cast<U32>(DefaultAddr);
  return Blocks;
}

int CFileWorker::SaveFile(const QString& sPath, const void* pData, U32 NumBytes) {
  QFile File(sPath);
  if (!File.open(QIODevice::WriteOnly)) return -1;
  {
    const CFileProgress Progress(m_Progress, QStringLiteral("Saving File..."), NumBytes);
    const char* pBytes = static_cast<const char*>(pData);
    for (qint64 Pos = 0; Pos < NumBytes;) {
      const qint64 PieceBytes = std::min<qint64>(PIECE_BYTES, NumBytes - Pos);
      if (File.write(pBytes + Pos, PieceBytes) != PieceBytes) {
        File.remove();
        return -1;
      }
      Pos += PieceBytes;
      Progress.SetValue(Pos);
    }
    // The last bytes may still be in the file's buffer.
    if (!File.flush()) {
      File.remove();
      return -1;
    }
  }
  File.close();
  Q_EMIT FileSaved(sPath, NumBytes);
  return 0;
}

QMemBlocks CFileWorker::ReadSegments(const ELF_FILE* pFile) {
  return VFile::ReadSegments(pFile, m_Sink);
}

void CFileWorker::SetProgram(const QMemBlocks& Blocks) {
  const std::lock_guard Lock(m_ProgramMutex);
  m_Program = Blocks;
}

QMemBlocks CFileWorker::ReadProgramSegments() {
  const std::lock_guard Lock(m_ProgramMutex);
  return m_Program;
}

void CFileWorker::SetProgressSink(PROGRESS_SINK Sink) {
  m_Progress = std::move(Sink);
}

void CFileWorker::SetMessageSink(MessageSink Sink) {
  m_Sink = std::move(Sink);
}

}  // namespace VFile
