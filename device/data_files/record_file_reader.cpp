#include "device/data_files/record_file_reader.h"

#include "base/msg_flags.h"

namespace VFile {

namespace {

constexpr qsizetype PIECE_BYTES = 1000000;
constexpr I64 MAX_WARNINGS = 100;  // for a file that is none of records at all

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

}  // namespace

void CRecordFileReader::ParseLine(std::string_view sLine) {
  const DATA_RECORD Record = m_Parser.Parse(sLine);
  if (!Record.bValid) {
    if (m_FirstInvalid < 0) m_FirstInvalid = m_NumLines;
    if (m_Sink && m_NumInvalid++ < MAX_WARNINGS)
      m_Sink(QStringLiteral("Discarded invalid record in s-record file"), MSG_WARNING | MSG_TO_ALL);
  } else if (Record.bIsData && !Record.Data.isEmpty() && m_FirstInvalid < 0) {
    m_Pieces.push_back({Record.Addr, static_cast<U32>(Record.Data.size()), m_Bytes.size()});
    m_Bytes += Record.Data;
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

void CRecordFileReader::ReadLines(QFile& File) {
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
}

QMemBlocks CRecordFileReader::Refuse(const QFile& File, const QString& sReason) const {
  if (m_Sink) {
    m_Sink(QStringLiteral("could not open file \"%1\": %2").arg(File.fileName(), sReason), MSG_ERROR | MSG_TO_ALL);
  }
  return {};
}

QMemBlocks CRecordFileReader::Read(QFile& File) {
  ReadLines(File);
  if (m_FirstInvalid >= 0) {
    return Refuse(File, QStringLiteral("file contains corrupt data record at line %1.").arg(m_FirstInvalid));
  }
  const QMemBlocks Blocks = MergePieces(std::move(m_Pieces), m_Bytes);
  if (Blocks.isEmpty() && !m_Bytes.isEmpty()) {
    return Refuse(File, QStringLiteral("its data lies in more than %1 places.").arg(MAX_MERGED_BLOCKS));
  }
  return Blocks;
}

}  // namespace VFile
