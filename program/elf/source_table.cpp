#include "program/elf/source_table.h"

namespace {

// Compilers enter these among the files for what comes from no file.
const char* const apNoFileNames[] = {"<built-in>", "<stdin>"};

}  // namespace

I32 CSourceTable::Intern(const std::string& sPath) {
  for (const char* sNoFile : apNoFileNames) {
    if (sPath.find(sNoFile) != std::string::npos) return -1;
  }
  const auto At = FileByPath.find(sPath);
  if (At != FileByPath.end()) return At->second;
  const I32 File = static_cast<I32>(aFiles.size());
  aFiles.push_back({sPath, {}});
  FileByPath.emplace(aFiles.back().sPath, File);
  return File;
}

void CSourceTable::AddUnit(I32 File, U32 UnitEntry) {
  if (File < 0) return;
  std::vector<U32>& aUnits = aFiles[File].aUnits;
  if (aUnits.empty() || aUnits.back() != UnitEntry) aUnits.push_back(UnitEntry);
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
