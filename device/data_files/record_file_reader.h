#pragma once

#include <QFile>

#include "base/sinks.h"
#include "device/data_files/record_parser.h"

namespace VFile {

// Reads a text record file piece by piece.
class CRecordFileReader {
public:
  CRecordFileReader(FILE_CLASS Class, const PROGRESS_SINK& Progress, const MessageSink& Sink)
      : m_Parser(Class), m_Progress(Progress), m_Sink(Sink) {}

  // The merged data records; empty with one error message when a line is no valid record.
  QMemBlocks Read(QFile& File);

private:
  qsizetype ParsePiece(std::string_view sPiece);
  void ParseLine(std::string_view sLine);
  void WarnOfLostLine(std::string_view sLine);

  CRecordParser m_Parser;
  const PROGRESS_SINK& m_Progress;
  const MessageSink& m_Sink;
  QMemBlocks m_Blocks;
  I64 m_NumLines = 0;
  I64 m_FirstInvalid = -1;  // index of the line in the file
};

}  // namespace VFile
