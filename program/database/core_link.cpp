#include "program/database/core_link.h"

#include "core/vcore.h"

U32 InstAlignment() {
  return VCore::GetInfo().MinInstLen;
}

U32 MaxInstLength() {
  return VCore::GetInfo().MaxInstLen;
}

void AttachToCore(ELF_FILE* pElf) {
  VCore::AttachElf(pElf);
  if (pElf) VCore::BuildMappingSymbols();
}

QMemBlocks StoreCoreImage(const QMemBlocks& Blocks) {
  VCore::SetImage(Blocks);
  return VCore::GetImage();
}

void AnalyzeCoreProgram() {
  VCore::AnalyzeProgram();
}

std::shared_ptr<VCore::CORE_STATE> NewCore() {
  return VCore::NewModel();
}

void UseCore(VCore::CORE_STATE* pCore) {
  VCore::UseModel(pCore);
}

bool TakeCoreProgram(VCore::CORE_STATE& Core) {
  return VCore::TakeProgram(Core);
}
