#include "program/elf/source_table.h"

#include "program/elf/elf.h"

namespace {

// Compilers enter these among the files for what comes from no file.
const char* const apNoFileNames[] = {"<built-in>", "<stdin>"};

// More than any program has; a damaged file could ask for a product of its counts.
constexpr U64 MAX_PATH_BYTES = 256 * 1024 * 1024;
constexpr U64 BYTES_OF_ENTRY = 256;  // what a path takes apart from its text, here and in other tables
constexpr U64 MAX_UNITS_OF_FILES = 16 * 1024 * 1024;

}  // namespace

I32 CSourceTable::Intern(const std::string& sPath) {
  for (const char* sNoFile : apNoFileNames) {
    if (sPath.find(sNoFile) != std::string::npos) return -1;
  }
  const auto At = FileByPath.find(sPath);
  if (At != FileByPath.end()) return At->second;
  if (NumPathBytes + sPath.size() + BYTES_OF_ENTRY > MAX_PATH_BYTES) return -1;
  NumPathBytes += sPath.size() + BYTES_OF_ENTRY;
  const I32 File = static_cast<I32>(aFiles.size());
  aFiles.push_back({sPath, {}});
  FileByPath.emplace(aFiles.back().sPath, File);
  return File;
}

void CSourceTable::AddUnit(I32 FileTable, U32 UnitEntry) {
  if (FileTable < 0) return;
  const std::vector<I32>& aTableFiles = aFileTables[FileTable].aFiles;
  if (NumUnitsOfFiles + aTableFiles.size() > MAX_UNITS_OF_FILES) return;
  NumUnitsOfFiles += aTableFiles.size();
  for (const I32 File : aTableFiles) {
    if (File < 0) continue;
    std::vector<U32>& aUnits = aFiles[File].aUnits;
    if (aUnits.empty() || aUnits.back() != UnitEntry) aUnits.push_back(UnitEntry);
  }
}

I32 CSourceTable::AddFileTable(U32 FirstNumber, std::vector<I32> aFileNumbers) {
  aFileTables.push_back({FirstNumber, std::move(aFileNumbers)});
  return static_cast<I32>(aFileTables.size()) - 1;
}

I32 CSourceTable::FileOf(I32 FileTable, I64 Number) const {
  if (FileTable < 0) return -1;
  const FILE_TABLE& Table = aFileTables[FileTable];
  const I64 Index = Number - Table.FirstNumber;
  return Index >= 0 && Index < static_cast<I64>(Table.aFiles.size()) ? Table.aFiles[Index] : -1;
}

void CSourceTable::EndRun(U32 Addr) {
  for (auto it = aLines.rbegin(); it != aLines.rend() && it->Addr == Addr && !(it->Flags & ELF_LINE_END_SEQUENCE);
       ++it) {
    it->Flags |= ELF_LINE_WITHOUT_CODE;
  }
}
