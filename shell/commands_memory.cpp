// Target.* that access memory and registers, and the memory map.

#include <QFile>
#include <QFileInfo>

#include "device/data_files/vfile.h"
#include "device/device.h"
#include "device/device_context.h"
#include "device/device_data_provider.h"
#include "peripherals/memory_map.h"
#include "program/database/file_finder.h"
#include "script/api_stubs.h"
#include "shell/actions/action_dispatch.h"
#include "shell/actions/action_errors.h"
#include "shell/actions/action_ids.h"
#include "shell/command_args.h"
#include "shell/commands.h"
#include "shell/memory_saver.h"
#include "shell/register_files.h"
#include "shell/settings/named_constants.h"
#include "shell/target_failures.h"

namespace {

constexpr U8 WIDTH_FROM_SETTING = 255;
constexpr U32 MAX_BYTE = 0xFF;

CDevice& Device() {
  return CDevice::Get();
}

void Fail(U32 ActionID, const char* sError, int Arg) {
  SetActionError(ActionID, QLatin1String(sError), QuotedArg(GetActionArgs(ActionID).value(Arg)));
}

// ---- Single values

void GetReg(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_GET_REG;
  if (!CheckActionArgs(ID) || !CheckHalted(ID)) return;
  const QString sName = GetActionArgs(ID).value(0);
  if (CRegisterFiles::Get().FindRegister(sName) < 0) return Fail(ID, ActionError::INVALID_PARAMETER, 0);
  const U64 Value = ReadTargetReg(sName);
  if (Value == ~U64{0}) return SetActionError(ID, QLatin1String(ActionError::COULD_NOT_READ_MEMORY));
  SetActionResult(ID, Value);
}

void SetReg(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SET_REG;
  U32 Value = 0;
  if (!CheckActionArgs(ID) || !CheckHalted(ID) || !GetNumberArg(ID, 1, &Value)) return;
  const int Index = CRegisterFiles::Get().FindRegister(GetActionArgs(ID).value(0));
  if (Index < 0) return Fail(ID, ActionError::INVALID_PARAMETER, 0);
  CDeviceDataProvider::Get().MarkRegStale(static_cast<U32>(Index));
  Device().ScheduleWriteReg(static_cast<U32>(Index), Value);
}

template <U32 ID, U32 NumBytes>
void ReadInt(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetAddressArg(ID, 0, &Addr)) return;
  bool bOk = false;
  const U32 Value = ReadTargetInt(Addr, NumBytes, &bOk);
  if (!bOk) return SetActionError(ID, QLatin1String(ActionError::COULD_NOT_READ_MEMORY));
  SetActionResult(ID, Value);
}

// What is read behind it, by a script for one, has to come from the target.
int WriteMem(U32 Addr, U32 NumBytes, U8 AW, U32 Flags, const void* pData) {
  CDeviceDataProvider::Get().MarkMemStale(Addr, NumBytes);
  return Device().ScheduleWriteMem(Addr, NumBytes, 0, AW, Flags, static_cast<const U8*>(pData));
}

// Whether the bytes hold the value, or cut nothing but the sign of a negative one, which a script passes as 32 bits.
bool FitsBytes(I64 Value, U32 NumBytes) {
  const U32 NumBits = 8 * NumBytes;
  if (NumBits == 64 || Value >> NumBits == 0 || Value >> NumBits == -1) return true;
  return NumBits < 32 && Value >> NumBits == UINT32_MAX >> NumBits;
}

template <U32 ID, U32 NumBytes>
void WriteInt(COMMAND_CONTEXT&) {
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetAddressArg(ID, 0, &Addr)) return;
  bool bOk = false;
  const I64 Value = ParseConstOrNumber(GetActionArgs(ID).value(1), &bOk);
  if (!bOk || !FitsBytes(Value, NumBytes)) return Fail(ID, ActionError::INVALID_PARAMETER, 1);
  U8 aData[8] = {};
  const bool bBigEndian = Device().Context().State.DataEndian == ENDIAN_BIG;
  for (U32 i = 0; i < NumBytes; ++i) aData[bBigEndian ? NumBytes - 1 - i : i] = static_cast<U8>(Value >> (8 * i));
  WriteMem(Addr, NumBytes, NumBytes > 4 ? 0 : NumBytes, 0, aData);
}

// ---- Blocks

// The device refuses ranges up to the last address.
bool IsRange(U32 Addr, U64 NumBytes) {
  return NumBytes != 0 && NumBytes <= MAX_DYN_PARAM_BYTES && Addr + NumBytes < INVALID_ADDR;
}

// A range in two arguments; false with the error.
bool GetRangeArgs(U32 ActionID, int Index, U32* pAddr, U32* pNumBytes) {
  if (!GetAddressArg(ActionID, Index, pAddr) || !GetNumberArg(ActionID, Index + 1, pNumBytes)) return false;
  if (IsRange(*pAddr, *pNumBytes)) return true;
  Fail(ActionID, ActionError::INVALID_PARAMETER, Index + 1);
  return false;
}

void FillMemory(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_FILL_MEMORY;
  U32 Addr = 0;
  U32 NumBytes = 0;
  U32 Value = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetRangeArgs(ID, 0, &Addr, &NumBytes)) return;
  if (!GetNumberArg(ID, 2, &Value)) return;
  if (Value > MAX_BYTE) return Fail(ID, ActionError::INVALID_PARAMETER, 2);
  const QByteArray Data(NumBytes, static_cast<char>(Value));
  WriteMem(Addr, NumBytes, WIDTH_FROM_SETTING, MEM_FLAG_DOWNLOAD, Data.constData());
}

void LoadMemory(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_LOAD_MEMORY;
  U32 Addr = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetAddressArg(ID, 1, &Addr)) return;
  const QString sPath = CFileFinder::Get()->ResolvePath(GetActionArgs(ID).value(0));
  if (!QFileInfo(sPath).isFile()) return Fail(ID, ActionError::FILE_NOT_FOUND, 0);
  if (!IsRange(Addr, static_cast<U64>(QFileInfo(sPath).size()))) return Fail(ID, ActionError::INVALID_PARAMETER, 0);
  const QByteArray Data = VFile::CFileWorker::Get()->ReadBinaryFile(sPath);
  if (!IsRange(Addr, static_cast<U64>(Data.size()))) return Fail(ID, ActionError::INVALID_FILENAME, 0);
  const bool bBackground = Device().Context().State.aCapability[HW_CAP_BMA];
  const U32 Flags = MEM_FLAG_DOWNLOAD | (bBackground ? 0u : static_cast<U32>(MEM_FLAG_HALT));
  WriteMem(Addr, static_cast<U32>(Data.size()), WIDTH_FROM_SETTING, Flags, Data.constData());
}

CMemorySaver& Saver() {
  static CMemorySaver* const pSaver = new CMemorySaver;
  return *pSaver;
}

void SaveMemory(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_SAVE_MEMORY;
  U32 Addr = 0;
  U32 NumBytes = 0;
  if (!CheckActionArgs(ID) || !CheckConnected(ID) || !GetRangeArgs(ID, 1, &Addr, &NumBytes)) return;
  const QString sPath = OutputPath(GetActionArgs(ID).value(0));
  if (!CanWriteFile(sPath)) return Fail(ID, ActionError::INVALID_FILENAME, 0);
  if (!Saver().Save(sPath, Addr, NumBytes)) Fail(ID, ActionError::INVALID_PARAMETER, 2);
}

// ---- The memory map

void LoadMemoryMap(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_LOAD_MEMORY_MAP;
  if (!CheckActionArgs(ID)) return;
  const QString sFile = GetActionArgs(ID).value(0);
  const QString sPath = CFileFinder::Get()->ResolvePath(sFile);
  if (!QFileInfo(sPath).isFile() || CMemoryMap::Get().LoadMapFile(sPath) < 0) {
    SetPathError(ID, ActionError::FILE_NOT_FOUND, sFile);
  }
}

void AddMemorySegment(COMMAND_CONTEXT&) {
  constexpr U32 ID = ACTION_TARGET_ADD_MEMORY_SEGMENT;
  U32 Addr = 0;
  U32 NumBytes = 0;
  if (!CheckActionArgs(ID) || !GetNumberArg(ID, 1, &Addr) || !GetNumberArg(ID, 2, &NumBytes)) return;
  MEMORY_REGION Segment;
  Segment.Addr = Addr;
  Segment.Size = NumBytes;
  if (CMemoryMap::Get().AddRegion(Segment, GetActionArgs(ID).value(0)) < 0) {
    return Fail(ID, ActionError::INVALID_PARAMETER, 2);
  }
  CMemoryMap::Get().Tidy(REGION_SEGMENT);
}

constexpr COMMAND_HANDLER HANDLERS[] = {
    {ACTION_TARGET_GET_REG, GetReg},
    {ACTION_TARGET_SET_REG, SetReg},
    {ACTION_TARGET_READ_U32, ReadInt<ACTION_TARGET_READ_U32, 4>},
    {ACTION_TARGET_READ_U16, ReadInt<ACTION_TARGET_READ_U16, 2>},
    {ACTION_TARGET_READ_U8, ReadInt<ACTION_TARGET_READ_U8, 1>},
    {ACTION_TARGET_WRITE_U64, WriteInt<ACTION_TARGET_WRITE_U64, 8>},
    {ACTION_TARGET_WRITE_U32, WriteInt<ACTION_TARGET_WRITE_U32, 4>},
    {ACTION_TARGET_WRITE_U16, WriteInt<ACTION_TARGET_WRITE_U16, 2>},
    {ACTION_TARGET_WRITE_U8, WriteInt<ACTION_TARGET_WRITE_U8, 1>},
    {ACTION_TARGET_FILL_MEMORY, FillMemory},
    {ACTION_TARGET_SAVE_MEMORY, SaveMemory},
    {ACTION_TARGET_LOAD_MEMORY, LoadMemory},
    {ACTION_TARGET_LOAD_MEMORY_MAP, LoadMemoryMap},
    {ACTION_TARGET_ADD_MEMORY_SEGMENT, AddMemorySegment},
};

}  // namespace

void RegisterMemoryCommands(COMMAND_CONTEXT& Context) {
  RegisterCommands(Context, HANDLERS);
  // Both live as long as the device that they listen to.
  Saver();
  static CTargetFailures* const pFailures = new CTargetFailures;
  Q_UNUSED(pFailures);
}
