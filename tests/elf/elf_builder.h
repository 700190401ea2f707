#pragma once

#include <string>

#include "base/endian.h"
#include "hex_bytes.h"

// A program file that consists of sections only, little-endian.
class CElfBuilder {
public:
  CElfBuilder& Add(const std::string& sName, const std::vector<U8>& aBytes, U32 Flags = 0) {
    aSections.push_back({sName, aBytes, Flags});
    return *this;
  }
  CElfBuilder& Add(const std::string& sName, std::string_view sHex) { return Add(sName, HexBytes(sHex)); }

  std::vector<char> Bytes() const {
    constexpr U32 HEADER_SIZE = 52;
    std::vector<char> aFile(HEADER_SIZE), aHeaders(SECTION_HEADER_SIZE);
    std::string sNames(1, '\0');
    std::vector<SECTION> aAll = aSections;
    aAll.push_back({".shstrtab", {}, 0});
    for (SECTION& Section : aAll) {
      const U32 Name = static_cast<U32>(sNames.size());
      sNames += Section.sName + '\0';
      if (&Section == &aAll.back()) Section.aBytes.assign(sNames.begin(), sNames.end());
      const U32 aWords[SECTION_HEADER_SIZE / 4] = {
          Name, 1, Section.Flags, 0, static_cast<U32>(aFile.size()), static_cast<U32>(Section.aBytes.size())};
      for (const U32 Word : aWords) Append<U32>(aHeaders, Word);
      aFile.insert(aFile.end(), Section.aBytes.begin(), Section.aBytes.end());
    }
    WriteHeader(aFile, static_cast<U16>(aAll.size()));
    aFile.insert(aFile.end(), aHeaders.begin(), aHeaders.end());
    return aFile;
  }

private:
  static constexpr U32 SECTION_HEADER_SIZE = 40;
  struct SECTION {
    std::string sName;
    std::vector<U8> aBytes;
    U32 Flags;
  };

  std::vector<SECTION> aSections;

  template <typename T>
  static void Append(std::vector<char>& aBytes, T Value) {
    aBytes.resize(aBytes.size() + sizeof(T));
    StoreInt<T>(aBytes.data() + aBytes.size() - sizeof(T), Value, false);
  }
  static void WriteHeader(std::vector<char>& aFile, U16 NumSections) {
    constexpr U8 acIdent[] = {0x7F, 'E', 'L', 'F', 1, 1, 1};
    std::copy(std::begin(acIdent), std::end(acIdent), aFile.begin());
    StoreInt<U16>(&aFile[18], 40, false);  // the machine: ARM
    StoreInt<U32>(&aFile[20], 1, false);
    StoreInt<U32>(&aFile[32], static_cast<U32>(aFile.size()), false);
    StoreInt<U16>(&aFile[46], SECTION_HEADER_SIZE, false);
    StoreInt<U16>(&aFile[48], NumSections + 1, false);
    StoreInt<U16>(&aFile[50], NumSections, false);
  }
};
