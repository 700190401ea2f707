#pragma once

#include <QFile>

#include <vector>

#include "base/sinks.h"
#include "device/data_files/mem_block_merge.h"
#include "device/data_files/record_parser.h"

namespace VFile {

// Reads a text record file piece by piece.
class CRecordFileReader {
public:
  CRecordFileReader(FILE_CLASS Class, const PROGRESS_SINK& Progress, const MessageSink& Sink)
      : m_Parser(Class), m_Progress(Progress), m_Sink(Sink) {}

  // The merged data records; empty with one error message when a line is no valid record, or when the data lies in more
  // than MAX_MERGED_BLOCKS places.
  QMemBlocks Read(QFile& File);

private:
  void ReadLines(QFile& File);
  qsizetype ParsePiece(std::string_view sPiece);
  void ParseLine(std::string_view sLine);
  void WarnOfLostLine(std::string_view sLine);
  QMemBlocks Refuse(const QFile& File, const QString& sReason) const;

  CRecordParser m_Parser;
  const PROGRESS_SINK& m_Progress;
  const MessageSink& m_Sink;
  std::vector<DATA_PIECE> m_Pieces;
  QByteArray m_Bytes;  // of all records, in the order of the file
  I64 m_NumLines = 0;
  I64 m_NumInvalid = 0;
  I64 m_FirstInvalid = -1;  // index of the line in the file
};

}  // namespace VFile
