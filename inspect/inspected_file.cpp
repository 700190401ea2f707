#include <cstdio>

#include "inspect/inspect.h"
#include "program/elf/elf.h"

namespace {

// What the reader reports of a successful load; everything else is a complaint.
bool IsReport(const char* sText) {
  static const char* const apReports[] = {
      "parsed ",         "File Size: ",       "Dwarf Symbol Count: ", "ELF Symbol Count: ",
      "Data Encoding: ", "Source Language: ", "total init time: ",    "Dwarf Version: "};
  for (const char* sReport : apReports) {
    if (std::strncmp(sText, sReport, std::strlen(sReport)) == 0) return true;
  }
  return false;
}

}  // namespace

CInspectedFile::CInspectedFile(const INSPECT_OPTIONS& Options) {
  ELF_SetMessageCallback([](const char* sText, U32) {
    if (!IsReport(sText)) std::fprintf(stderr, "%s\n", sText);
  });
  pFile = ELF_Open(Options.sFile.toUtf8().constData());
}

CInspectedFile::~CInspectedFile() {
  ELF_Close(pFile);
}
