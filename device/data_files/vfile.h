#pragma once
// Readers that turn a data file into blocks of target memory, and the writer of binary files.

#include <QFile>
#include <QObject>
#include <QString>
#include <mutex>

#include "base/mem_block.h"
#include "base/sinks.h"

struct ELF_FILE;

namespace VFile {

// Class of a data file, by its name and, without a suffix, by its first bytes.
enum FILE_CLASS : U32 { FILE_CLASS_NONE = 0, FILE_CLASS_BINARY, FILE_CLASS_ELF, FILE_CLASS_SREC, FILE_CLASS_HEX };

// NONE for a path that is no existing regular file or whose suffix is not one of a data file.
FILE_CLASS GetFileClass(const QString& sPath);

// One piece of memory that its owner keeps alive; see MakeMemBlocks.
struct MEM_RECORD {
  U32 Addr = 0;
  U32 VirtAddr = 0;
  U32 NumBytes = 0;
  const U8* pData = nullptr;
};

// Blocks that refer to the records' bytes without copying; empty when paRecords is null.
QMemBlocks MakeMemBlocks(U32 NumRecords, const MEM_RECORD* paRecords);

// Main thread; each call blocks until the file is done, with the progress sink as the only sign of life. The operations
// with Program in their names belong to the program database and may be called on any thread.
class CFileWorker : public QObject {
  Q_OBJECT

public:
  // The only instance, made on first use.
  static CFileWorker* Get();

  // Blocks of the file, sorted, without overlaps and adjacent pairs. DefaultAddr places a binary file, which lies at 0
  // without it (-1), and a lone record at 0xFFFFFFFF. Empty when the path is no regular file, its class is unknown, or
  // the file cannot be read or a record is corrupt (one error line then). An ELF class path answers with the segments
  // of the program that is open, whatever the path names.
  QMemBlocks ReadDataFile(const QString& sPath, I64 DefaultAddr = -1);
  // The bytes of a file of any name; empty, with an error line, when it cannot be read.
  QByteArray ReadBinaryFile(const QString& sPath);
  // Writes NumBytes bytes; returns 0 and emits FileSaved, or removes the file and returns -1.
  int SaveFile(const QString& sPath, const void* pData, U32 NumBytes);

  // One block per loadable segment of a program file, sorted; none for null.
  QMemBlocks ReadSegments(const ELF_FILE* pFile);
  // The blocks of the open program; the program database tells them.
  void SetProgram(const QMemBlocks& Blocks);
  QMemBlocks ReadProgramSegments();

  void SetProgressSink(PROGRESS_SINK Sink);
  void SetMessageSink(MessageSink Sink);

Q_SIGNALS:
  void FileSaved(QString FilePath, U32 nBytes);

private:
  CFileWorker() = default;
  bool Open(QFile& File, qint64 MaxBytes) const;

  std::mutex m_ProgramMutex;  // the program may be changed on another thread
  QMemBlocks m_Program;
  PROGRESS_SINK m_Progress;
  MessageSink m_Sink;
};

}  // namespace VFile
