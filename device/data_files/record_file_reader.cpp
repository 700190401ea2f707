#include "device/data_files/record_file_reader.h"

#include "base/msg_flags.h"
#include "device/data_files/mem_block_merge.h"

namespace VFile {

namespace {

constexpr qsizetype PIECE_BYTES = 1000000;

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

void CRecordFileReader::ParseLine(std::string_view sLine) {
  const DATA_RECORD Record = m_Parser.Parse(sLine);
  if (!Record.bValid) {
    if (m_FirstInvalid < 0) m_FirstInvalid = m_NumLines;
    if (m_Sink) m_Sink(QStringLiteral("Discarded invalid record in s-record file"), MSG_WARNING | MSG_TO_ALL);
  } else if (Record.bIsData && !Record.Data.isEmpty()) {
    m_Blocks.append({Record.Addr, static_cast<U32>(Record.Data.size()), Record.Addr, Record.Data, {}});
  }
  ++m_NumLines;
}

// Number of bytes consumed: all lines with an end, and the white space behind them.
qsizetype CRecordFileReader::ParsePiece(std::string_view sPiece) {
  size_t Pos = 0;
  while (Pos < sPiece.size()) {
    size_t End = sPiece.find_first_of("\r\n", Pos);
    if (End == std::string_view::npos) {
      if (Pos != 0) break;
      End = sPiece.size();
    }
    if (End > Pos) ParseLine(sPiece.substr(Pos, End - Pos));
    while (End < sPiece.size() && IsBlank(sPiece[End])) ++End;
    Pos = End;
  }
  return static_cast<qsizetype>(Pos);
}

void CRecordFileReader::WarnOfLostLine(std::string_view sLine) {
  const DATA_RECORD Record = m_Parser.Parse(sLine);
  if (!m_Sink || (Record.bValid && !Record.bIsData)) return;
  m_Sink(QStringLiteral("The data record at line %1 has no line end and is ignored.").arg(m_NumLines),
         MSG_WARNING | MSG_TO_ALL);
}

QMemBlocks CRecordFileReader::Read(QFile& File) {
  QByteArray Piece;
  qint64 Offset = 0;
  while (File.seek(Offset) && !(Piece = File.read(PIECE_BYTES)).isEmpty()) {
    const std::string_view sPiece(Piece.constData(), static_cast<size_t>(Piece.size()));
    const qsizetype Consumed = ParsePiece(sPiece);
    Offset += Consumed;
    if (m_Progress.SetValue) m_Progress.SetValue(static_cast<int>(Offset));
    if (Piece.size() < PIECE_BYTES || Consumed == 0) {
      if (Consumed < Piece.size()) WarnOfLostLine(sPiece.substr(static_cast<size_t>(Consumed)));
      break;
    }
  }
  if (m_FirstInvalid >= 0) {
    const QString sText = QStringLiteral("could not open file \"%1\": file contains corrupt data record at line %2.");
    if (m_Sink) m_Sink(sText.arg(File.fileName()).arg(m_FirstInvalid), MSG_ERROR | MSG_TO_ALL);
    return {};
  }
  return m_Blocks.size() > 1 ? MergeMemBlocks(m_Blocks) : m_Blocks;
}

}  // namespace VFile
