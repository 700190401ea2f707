#include "device/data_requests.h"

#include <algorithm>
#include <cstring>

namespace {

template <typename T>
QByteArray BytesOf(const T& Value) {
  return QByteArray(reinterpret_cast<const char*>(&Value), sizeof(Value));
}

}  // namespace

DATA_REQUEST DATA_REQUEST::Mem(CDeviceEventListener* pListener, U32 Addr, U32 NumBytes) {
  return {DR_MEM, pListener, BytesOf(MEM_RANGE{Addr, NumBytes})};
}

DATA_REQUEST DATA_REQUEST::Regs(CDeviceEventListener* pListener, U32 Cnt, const U32* paIndex) {
  return {DR_REGS, pListener,
          QByteArray(reinterpret_cast<const char*>(paIndex), static_cast<qsizetype>(Cnt * sizeof(U32)))};
}

DATA_REQUEST DATA_REQUEST::CPReg(CDeviceEventListener* pListener, const char* sReg) {
  return {DR_CP_REG, pListener, QByteArray(sReg)};
}

DATA_REQUEST DATA_REQUEST::Loc(CDeviceEventListener* pListener, const ELF_SYM_LOC& Loc, U32 NumBytes) {
  return {DR_LOC, pListener, BytesOf(NumBytes) + BytesOf(Loc)};
}

DATA_REQUEST::MEM_RANGE DATA_REQUEST::ToMem() const {
  MEM_RANGE Range;
  std::memcpy(&Range, Payload.constData(), sizeof(Range));
  return Range;
}

std::vector<U32> DATA_REQUEST::ToRegs() const {
  std::vector<U32> aIndex(Payload.size() / sizeof(U32));
  std::memcpy(aIndex.data(), Payload.constData(), aIndex.size() * sizeof(U32));
  return aIndex;
}

DATA_REQUEST::LOC_READ DATA_REQUEST::ToLoc() const {
  LOC_READ Read;
  std::memcpy(&Read.NumBytes, Payload.constData(), sizeof(Read.NumBytes));
  std::memcpy(&Read.Loc, Payload.constData() + sizeof(Read.NumBytes), sizeof(Read.Loc));
  return Read;
}

void CDataRequests::Add(const DATA_REQUEST& Request) {
  if (std::find(aRequest.begin(), aRequest.end(), Request) == aRequest.end()) aRequest.push_back(Request);
}

void CDataRequests::Remove(const DATA_REQUEST& Request) {
  std::erase(aRequest, Request);
}

void CDataRequests::RemoveListener(const CDeviceEventListener* pListener) {
  std::erase_if(aRequest, [&](const DATA_REQUEST& Request) { return Request.pListener == pListener; });
}

std::vector<DATA_REQUEST> CDataRequests::TakeKind(U8 Kind) {
  std::vector<DATA_REQUEST> aTaken;
  std::erase_if(aRequest, [&](const DATA_REQUEST& Request) {
    if (Request.Kind != Kind) return false;
    aTaken.push_back(Request);
    return true;
  });
  return aTaken;
}
