#include "core/vcore.h"

#include "core/core_info.h"
#include "core/core_state.h"
#include "core/core_table.h"

namespace VCore {

namespace {

constexpr U32 INST_ALIGN_WITHOUT_CORE = 1;

// Everything that was derived from the core or the program.
void DropDerived(CORE_STATE& Core) {
  Core.Cache.Clear();
  Core.Texts.Clear();
  Core.InstCounts.clear();
  ++Core.Generation;
}

thread_local CORE_STATE* pModelOfThread = nullptr;

VCORE_INFO InfoWithoutCore() {
  VCORE_INFO Info;
  Info.InstAlign = INST_ALIGN_WITHOUT_CORE;
  return Info;
}

void SetEndianness(VCORE_INFO& Info, const VCORE_CPU& Cpu) {
  Info.InstEndianness = Cpu.InstEndianness;
  Info.DataEndianness = Cpu.DataEndianness;
}

}  // namespace

CORE_STATE& State() {
  static CORE_STATE Core;
  static const bool bFirst = [] { return Core.Info = InfoWithoutCore(), true; }();
  static_cast<void>(bFirst);
  return pModelOfThread != nullptr ? *pModelOfThread : Core;
}

std::shared_ptr<CORE_STATE> NewModel() {
  const SNAPSHOT Common = TakeSnapshot();
  auto pModel = std::make_shared<CORE_STATE>();
  pModel->pAPI = Common.pAPI;
  pModel->Cpu = Common.Cpu;
  pModel->Info = Common.Info;
  return pModel;
}

void UseModel(CORE_STATE* pModel) {
  pModelOfThread = pModel;
}

bool TakeProgram(CORE_STATE& Model) {
  CORE_STATE& Core = State();
  bool bDecoded = false;
  {
    const std::unique_lock Lock(Core.Mutex);
    DropDerived(Core);
    Core.Program = std::move(Model.Program);
    Core.pFile = Model.pFile;
    Core.Image = std::move(Model.Image);
    // A device that was chosen meanwhile may decode the code in another way.
    bDecoded = Core.pAPI == Model.pAPI && Core.Cpu == Model.Cpu;
    if (bDecoded) std::swap(Core.Cache, Model.Cache);
  }
  return bDecoded;
}

SNAPSHOT TakeSnapshot() {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return {Core.pAPI, Core.Cpu, Core.Info, Core.Generation};
}

void LogError(const SNAPSHOT& Core, const QString& sText) {
  if (Core.pAPI != nullptr && Core.pAPI->pfLogError) Core.pAPI->pfLogError(sText);
}

int Init(const VCORE_CPU& Cpu, const VCORE_API& API) {
  if (static_cast<I32>(Cpu.CoreId) <= 0) return -1;
  auto pAPI = std::make_shared<VCORE_API>(API);
  FillOwnAnswers(*pAPI);
  CORE_STATE& Core = State();
  {
    const std::unique_lock Lock(Core.Mutex);
    DropDerived(Core);
    Core.Program.Clear();
    Core.pFile = nullptr;
    Core.Image.Clear();
    Core.Anchor = INVALID_ADDR;
    Core.pAPI = pAPI;
    Core.Cpu = Cpu;
  }
  VCORE_INFO Info;
  SetEndianness(Info, Cpu);
  return SetInfo(Info);
}

void Exit() {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  DropDerived(Core);
  Core.Program.Clear();
  Core.pFile = nullptr;
  Core.Image.Clear();
  Core.Anchor = INVALID_ADDR;
  Core.pAPI.reset();
  Core.Cpu = {};
  Core.Info = InfoWithoutCore();
}

bool IsInitialised() {
  return TakeSnapshot().pAPI != nullptr;
}

int SetCpuInfo(const VCORE_CPU& Cpu) {
  CORE_STATE& Core = State();
  {
    const std::unique_lock Lock(Core.Mutex);
    if (Core.pAPI == nullptr || Core.Cpu == Cpu) return -1;
    Core.Cpu = Cpu;
    SetEndianness(Core.Info, Cpu);
    DropDerived(Core);
  }
  AnalyzeProgram();
  return 0;
}

VCORE_CPU GetCpuInfo() {
  return TakeSnapshot().Cpu;
}

VCORE_INFO GetInfo() {
  return TakeSnapshot().Info;
}

int SetInfo(const VCORE_INFO& Info) {
  CORE_STATE& Core = State();
  {
    const std::unique_lock Lock(Core.Mutex);
    Core.Info = Info;
    ++Core.Generation;
  }
  const char* sProblem = FirstInvalidField(Info);
  if (sProblem == nullptr) return 0;
  LogError(TakeSnapshot(), QString::fromLatin1(sProblem));
  return -1;
}

void AttachElf(ELF_FILE* pFile) {
  const U32 InstAlign = TakeSnapshot().Info.InstAlign;
  CProgramView Program;
  Program.Load(pFile, InstAlign);
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  DropDerived(Core);
  Core.Program = std::move(Program);
  Core.pFile = pFile;
}

int BuildMappingSymbols() {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  Core.Texts.Clear();
  Core.InstCounts.clear();
  return Core.Program.LoadRegions(Core.pFile, Core.Info.InstAlign);
}

int SetImage(const QMemBlocks& Blocks) {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  Core.Texts.Clear();
  return Core.Image.Set(Blocks);
}

QMemBlocks GetImage() {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return Core.Image.GetBlocks();
}

CAddrRange GetImageRange(bool bExecView) {
  CORE_STATE& Core = State();
  const std::shared_lock Lock(Core.Mutex);
  return Core.Image.GetRange(bExecView);
}

void ResetCache() {
  CORE_STATE& Core = State();
  const std::unique_lock Lock(Core.Mutex);
  DropDerived(Core);
}

}  // namespace VCore
