#pragma once

#include <string_view>

#include "base/types.h"
#include "device/data_files/vfile.h"

namespace VFile {

// One line of a text record file.
struct DATA_RECORD {
  bool bValid = false;
  bool bIsData = false;
  U32 RecType = 0;  // the record's type digit
  U32 Addr = 0;
  QByteArray Data;  // empty unless bIsData
};

// Parses the lines of one file in their order: the records of Intel HEX depend on those before.
class CRecordParser {
public:
  explicit CRecordParser(FILE_CLASS Class) : m_Class(Class) {}
  DATA_RECORD Parse(std::string_view sLine);

private:
  DATA_RECORD ParseSRecord(std::string_view sLine) const;
  DATA_RECORD ParseHex(std::string_view sLine);

  FILE_CLASS m_Class;
  U32 m_HexBase = 0;  // from the last extended address record
};

}  // namespace VFile
