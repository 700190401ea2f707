#include "base/stable_hash.h"

U32 StableHash32(const char* pData, size_t NumBytes) {
  U32 Hash = 2166136261u;
  for (size_t i = 0; i < NumBytes; ++i) Hash = (Hash ^ static_cast<U8>(pData[i])) * 16777619u;
  return Hash == 0 || Hash == 0xFFFFFFFFu ? 1u : Hash;
}

U32 StableHash32(QStringView sText) {
  const QByteArray Utf8 = sText.toUtf8();
  return StableHash32(Utf8.constData(), static_cast<size_t>(Utf8.size()));
}
