#include "rtos/plugin_services.h"

#include <QCoreApplication>
#include <QThread>

#include "base/msg_flags.h"
#include "base/text.h"
#include "device/device.h"
#include "device/device_data_provider.h"
#include "program/database/database.h"
#include "program/database/elfapi_types.h"
#include "program/elf/elf_types.h"
#include "rtos/plugin_host.h"
#include "shell/log/log.h"

namespace {

constexpr I32 NO_WINDOW = -1;
constexpr I32 INVALID_REQUEST = -5;  // of GetVar
constexpr U32 MAX_READ_BYTES = 63'999'999;
constexpr U8 WIDTH_FROM_SETTING = 255;

PLUGIN_SERVICES g_Services;

void Log(const QString& sText, U32 Level = MSG_INFO) {
  LogMsg(sText, Level | MSG_TO_ALL);
}

IPluginLists* Lists() {
  return CPluginHost::Get().IsClosing() ? nullptr : g_Services.pLists;
}

bool IsMainThread() {
  return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

// ---- Symbols

// What a value's type is behind pointers, typedefs and qualifiers.
ELF_SYM_HANDLE RecordOf(ELF_SYM_HANDLE hSym) {
  constexpr int MAX_POINTERS = 16;
  constexpr U32 TAG_POINTER = 0x0F;
  constexpr U32 TAG_REFERENCE = 0x10;
  ELF_SYM_HANDLE hType = ELF_GetType(hSym, true);
  for (int i = 0; i < MAX_POINTERS; ++i) {
    const U32 Tag = ELF_GetTag(hType);
    if (Tag != TAG_POINTER && Tag != TAG_REFERENCE) break;
    const ELF_SYM_HANDLE hTarget = ELF_GetType(hType, false);
    hType = hTarget == 0 ? 0 : ELF_GetType(hTarget, true);
  }
  return hType;
}

I32 FindMember(ELF_SYM_HANDLE hSym, const char* sMember, U32* pOffset, U32* pSize) {
  const MEMBER_PLACE Place = ELFAPI_FindMember(RecordOf(hSym), QString::fromUtf8(sMember));
  if (Place.Member < 0) {
    Log(QStringLiteral("GetSymInfo: member not found"), MSG_WARNING);
    return -1;
  }
  const ELF_SYM_HANDLE hMember = ELFAPI_GetMember(Place.Class, static_cast<U32>(Place.Member));
  U32 Offset = 0;
  for (const ELF_SYM_HANDLE hPart : Place.Way + ELF_SYM_LIST{hMember}) {
    const ELF_SYM_LOC Loc = ELFAPI_GetLocation(hPart, 0);
    if (Loc.Type == ELF_LOC_NONE || (hPart != hMember && Loc.Type != ELF_LOC_PARENT_LOC)) {
      Log(QStringLiteral("GetSymInfo: member byte offset could not be determined"), MSG_WARNING);
      return -1;
    }
    Offset += static_cast<U32>(Loc.Offset);
  }
  *pOffset = Offset;
  *pSize = ELFAPI_GetSize(hMember);
  return 0;
}

I32 GetSymInfo(const char* sSymbol, const char* sMember, U32* pAddr, U32* pSize) {
  Log(QStringLiteral("GetSymInfo ") + QString::fromUtf8(sSymbol) + u'.' + QString::fromUtf8(sMember));
  if (pAddr != nullptr) *pAddr = 0;
  if (pSize != nullptr) *pSize = 0;
  const CDatabaseLock Db;  // the handle means another symbol in another program
  const ELF_SYM_HANDLE hSym = ELFAPI_FindSymbol(QString::fromUtf8(sSymbol), true, true, true, true);
  Log(hSym ? QStringLiteral("GetSymInfo: symbol found") : QStringLiteral("GetSymInfo: symbol not found"),
      hSym ? MSG_INFO : MSG_WARNING);
  if (hSym == 0) return -1;
  U32 Addr = 0;
  U32 Size = 0;
  if (sMember == nullptr) {
    const U32 Found = ELFAPI_GetAddr(hSym);
    Addr = Found == INVALID_ADDR ? 0 : Found;
    Size = ELFAPI_GetSize(hSym);
  } else if (FindMember(hSym, sMember, &Addr, &Size) < 0) {
    return -1;
  }
  if (pAddr != nullptr) *pAddr = Addr;
  if (pSize != nullptr) *pSize = Size;
  Log(QStringLiteral("GetSymInfo returns %1 bytes @ %2").arg(Size).arg(HexText(Addr)));
  return 0;
}

// ---- Target memory and expressions

I32 ReadTarget(U32 Addr, U32 NumBytes, void* pData) {
  if (NumBytes < 1 || NumBytes > MAX_READ_BYTES) {
    LogMsg("VAPI::ReadMem: request exceeds limit", MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
    return -1;
  }
  if (!CDevice::Exists() || !CDevice::Get().isRunning()) {
    LogMsg("VAPI::ReadMem: target not ready for memory access", MSG_WARNING | MSG_TO_STDOUT | MSG_TO_FILE);
    return -1;
  }
  CDeviceDataProvider& Provider = CDeviceDataProvider::Get();
  const bool bRead =
      Provider.GetMem(&Provider, Addr, NumBytes, WIDTH_FROM_SETTING, static_cast<U8*>(pData)) == MEM_VALID;
  return bRead ? static_cast<I32>(NumBytes) : 0;
}

I32 ReadMem(U32 Addr, U32 NumBytes, void* pData) {
  if (pData == nullptr || NumBytes == 0) return -1;
  Log(QStringLiteral("ReadMem %1 bytes @ %2").arg(NumBytes).arg(HexText(Addr)));
  const I32 Result = ReadTarget(Addr, NumBytes, pData);
  Log(QStringLiteral("ReadMem returns %1").arg(Result));
  return Result;
}

I32 GetVar(const char* sExpression, void* pData, U32 NumBytes) {
  const QString sText = QString::fromUtf8(sExpression);
  Log(QStringLiteral("GetVar %1 bytes from %2").arg(NumBytes).arg(sText));
  if (sExpression == nullptr || pData == nullptr || NumBytes == 0) return INVALID_REQUEST;
  QByteArray Value;
  const I32 Result = g_Services.Evaluate ? g_Services.Evaluate(sText, &Value) : INVALID_REQUEST;
  if (Result < 0) {
    Log(QStringLiteral("GetVar: invalid expression"), MSG_WARNING);
    return Result;
  }
  if (!Value.isEmpty()) {
    std::memset(pData, 0, NumBytes);
    std::memcpy(pData, Value.constData(), std::min<size_t>(NumBytes, static_cast<size_t>(Value.size())));
  }
  Log(QStringLiteral("GetVar returns %1").arg(Result));
  return Result;
}

// ---- List windows

I32 Change(U32 hList, const char* sCommand, U32 First = 0, U32 Second = 0, const char* sText = nullptr) {
  if (!IsMainThread()) return 0;
  IPluginLists* const pLists = Lists();
  return pLists ? pLists->Change(hList, sCommand, First, Second, QString::fromUtf8(sText)) : NO_WINDOW;
}

U32 GetListHandle(U32 ListIndex) {
  return Lists() ? Lists()->GetHandle(ListIndex) : 0;
}
I32 AddColumn(U32 hList, const char* sName) {
  const I32 Result = Change(hList, "AddColumn", 0, 0, sName);
  if (Result == NO_WINDOW) Log(QStringLiteral("Could not determine parent window of listview"), MSG_WARNING);
  return Result;
}
I32 AddRow(U32 hList) {
  return Change(hList, "AddRow");
}
I32 ClearList(U32 hList) {
  return Lists() ? Lists()->Clear(hList) : NO_WINDOW;
}
I32 DeleteColumn(U32 hList, U32 Col) {
  return Change(hList, "DeleteColumn", Col);
}
I32 DeleteRow(U32 hList, U32 Row) {
  return Change(hList, "DeleteRow", Row);
}
I32 GetValue(U32 hList, U32 Row, U32 Col, char* pBuffer, U32 BufferSize) {
  QString sText;
  if (!Lists() || pBuffer == nullptr || !Lists()->GetText(hList, Row, Col, &sText)) return NO_WINDOW;
  const QByteArray Text = sText.toUtf8();
  // The terminating zero goes along where it fits.
  std::memcpy(pBuffer, Text.constData(), std::min<size_t>(BufferSize, static_cast<size_t>(Text.size()) + 1));
  return 0;
}
I32 GetColumnCount(U32 hList) {
  return Lists() ? Lists()->NumColumns(hList) : NO_WINDOW;
}
I32 FindColumn(U32 hList, const char* sName) {
  return Lists() ? Lists()->FindColumn(hList, QString::fromUtf8(sName)) : NO_WINDOW;
}
I32 GetRowCount(U32 hList) {
  return Lists() ? Lists()->NumRows(hList) : NO_WINDOW;
}
I32 SetValue(U32 hList, U32 Row, U32 Col, const char* sValue) {
  return Change(hList, "SetValue", Row, Col, sValue);
}
I32 SetIcon(U32 hList, U32 Row, U32 Col, const char* sIcon) {
  return Change(hList, "SetIcon", Row, Col, sIcon);
}
I32 SetColumnWidth(U32 hList, U32 Col, U32 Width) {
  return Change(hList, "SetColumnWidth", Col, Width);
}
I32 SetSelectedRow(U32 hList, U32 Row) {
  return Change(hList, "SetSelectedRow", Row);
}

constexpr PLUGIN_HOST_API HOST_API = {
    PLUGIN_NUM_HOST_FUNCS, GetSymInfo,     ReadMem,  GetListHandle,  GetVar,     AddColumn,   AddRow,   ClearList,
    DeleteColumn,          DeleteRow,      GetValue, GetColumnCount, FindColumn, GetRowCount, SetValue, SetIcon,
    SetColumnWidth,        SetSelectedRow,
};

}  // namespace

const PLUGIN_HOST_API& PluginHostAPI() {
  return HOST_API;
}

void SetPluginServices(const PLUGIN_SERVICES& Services) {
  g_Services = Services;
}
