#include "device/data_files/record_parser.h"

namespace VFile {

namespace {

constexpr size_t CHECKSUM_CHARS = 2;

// S-record: "S", type digit, two digits of count, address, data, checksum.
constexpr size_t SREC_MIN_CHARS = 10;
constexpr size_t SREC_COUNT_POS = 2;
constexpr size_t SREC_ADDR_POS = 4;

// Intel HEX: ":", two digits of count, four of offset, two of type, data, checksum.
constexpr size_t HEX_MIN_CHARS = 11;
constexpr size_t HEX_COUNT_POS = 1;
constexpr size_t HEX_ADDR_POS = 3;
constexpr size_t HEX_ADDR_CHARS = 4;
constexpr size_t HEX_TYPE_POS = 8;
constexpr size_t HEX_DATA_POS = 9;
constexpr size_t HEX_ADDRESS_RECORD_CHARS = 15;
constexpr size_t HEX_START_RECORD_CHARS = 19;

enum HEX_TYPE : U32 {
  HEX_DATA = 0,
  HEX_END = 1,
  HEX_SEGMENT_BASE = 2,
  HEX_SEGMENT_START = 3,
  HEX_LINEAR_BASE = 4,
  HEX_LINEAR_START = 5,
};

int DigitOf(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

// False when a character is no digit or their number is odd.
bool DecodeBytes(std::string_view sDigits, QByteArray& Bytes) {
  if (sDigits.size() % 2 != 0) return false;
  Bytes.reserve(static_cast<qsizetype>(sDigits.size() / 2));
  for (size_t i = 0; i < sDigits.size(); i += 2) {
    const int High = DigitOf(sDigits[i]);
    const int Low = DigitOf(sDigits[i + 1]);
    if (High < 0 || Low < 0) return false;
    Bytes.append(static_cast<char>(High << 4 | Low));
  }
  return true;
}

U32 ValueOf(const QByteArray& Bytes) {
  U32 Value = 0;
  for (const char Byte : Bytes) Value = Value << 8 | static_cast<U8>(Byte);
  return Value;
}

U8 SumOf(const QByteArray& Bytes) {
  U32 Sum = 0;
  for (const char Byte : Bytes) Sum += static_cast<U8>(Byte);
  return static_cast<U8>(Sum);
}

// All bytes of a line behind its mark: count first, checksum last. False when the line holds anything else.
bool DecodeLine(std::string_view sLine, size_t CountPos, size_t CountedBehind, QByteArray& Bytes) {
  if (!DecodeBytes(sLine.substr(CountPos), Bytes)) return false;
  return static_cast<size_t>(static_cast<U8>(Bytes[0])) * 2 == sLine.size() - CountedBehind;
}

// Digits of the address by the S-record's type; 0 for a type that does not exist.
size_t SRecordAddrChars(U32 Type) {
  static constexpr size_t aChars[10] = {4, 4, 6, 8, 0, 4, 0, 8, 6, 4};
  return Type < 10 ? aChars[Type] : 0;
}

}  // namespace

DATA_RECORD CRecordParser::Parse(std::string_view sLine) {
  if (m_Class == FILE_CLASS_SREC) return ParseSRecord(sLine);
  if (m_Class == FILE_CLASS_HEX) return ParseHex(sLine);
  return {};
}

DATA_RECORD CRecordParser::ParseSRecord(std::string_view sLine) const {
  DATA_RECORD Record;
  if (sLine.size() < SREC_MIN_CHARS || sLine[0] != 'S') return Record;
  QByteArray Bytes;
  if (!DecodeLine(sLine, SREC_COUNT_POS, SREC_ADDR_POS, Bytes)) return Record;
  const U8 Checksum = static_cast<U8>(Bytes.back());
  Bytes.chop(1);
  if (static_cast<U8>(~SumOf(Bytes)) != Checksum) return Record;

  Record.RecType = static_cast<U32>(sLine[1] - '0');
  const size_t AddrChars = SRecordAddrChars(Record.RecType);
  if (AddrChars == 0 || sLine.size() < SREC_ADDR_POS + AddrChars + CHECKSUM_CHARS) return Record;
  Record.bValid = true;
  Record.bIsData = Record.RecType >= 1 && Record.RecType <= 3;
  const qsizetype AddrBytes = static_cast<qsizetype>(AddrChars / 2);
  Record.Addr = ValueOf(Bytes.mid(1, AddrBytes));
  if (Record.bIsData) Record.Data = Bytes.mid(1 + AddrBytes);
  return Record;
}

DATA_RECORD CRecordParser::ParseHex(std::string_view sLine) {
  DATA_RECORD Record;
  if (sLine.size() < HEX_MIN_CHARS || sLine[0] != ':' || sLine[HEX_TYPE_POS - 1] != '0') return Record;
  QByteArray Bytes;
  if (!DecodeLine(sLine, HEX_COUNT_POS, HEX_MIN_CHARS, Bytes)) return Record;
  const U8 Checksum = static_cast<U8>(Bytes.back());
  Bytes.chop(1);
  if (static_cast<U8>(-SumOf(Bytes)) != Checksum) return Record;

  Record.RecType = static_cast<U32>(sLine[HEX_TYPE_POS] - '0');
  const U32 Offset = ValueOf(Bytes.mid((HEX_ADDR_POS - HEX_COUNT_POS) / 2, HEX_ADDR_CHARS / 2));
  const QByteArray Data = Bytes.mid((HEX_DATA_POS - HEX_COUNT_POS) / 2);
  switch (Record.RecType) {
    case HEX_DATA:
      Record.bValid = Record.bIsData = true;
      Record.Addr = m_HexBase + Offset;
      Record.Data = Data;
      break;
    case HEX_END:
      Record.bValid = sLine.size() == HEX_MIN_CHARS;
      break;
    case HEX_SEGMENT_BASE:
    case HEX_LINEAR_BASE:
      Record.bValid = sLine.size() == HEX_ADDRESS_RECORD_CHARS && Offset == 0;
      if (Record.bValid) m_HexBase = ValueOf(Data) << (Record.RecType == HEX_SEGMENT_BASE ? 4 : 16);
      break;
    case HEX_SEGMENT_START:
    case HEX_LINEAR_START:
      Record.bValid = sLine.size() == HEX_START_RECORD_CHARS && Offset == 0;
      break;
    default:
      break;
  }
  return Record;
}

}  // namespace VFile
