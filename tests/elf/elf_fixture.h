#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "hex_bytes.h"
#include "program/elf/elf.h"
#include "program/elf/elf_dwarf_names.h"
#include "program/elf/elf_types.h"

inline std::string DataPath(const std::string& sName) {
  return VEXOR_SOURCE_DIR "/tests/elf/data/" + sName;
}

// Opens program files one at a time and keeps the reader's messages.
class CElfTest : public testing::Test {
protected:
  std::vector<std::string> aMessages;
  ELF_FILE* pFile = nullptr;

  CElfTest() {
    ELF_SetMessageCallback([this](const char* sText, U32) { aMessages.push_back(sText); });
  }
  ~CElfTest() override {
    Close();
    ELF_SetMessageCallback({});
  }
  void Close() {
    ELF_Close(pFile);
    pFile = nullptr;
  }
  ELF_FILE* Open(const std::string& sName) {
    Close();
    aMessages.clear();
    pFile = ELF_Open(DataPath(sName).c_str());
    EXPECT_NE(pFile, nullptr) << sName;
    return pFile;
  }
  ELF_FILE* OpenBytes(const std::vector<char>& aBytes) {
    Close();
    aMessages.clear();
    const std::string sPath = testing::TempDir() + "vexor_elf_" + std::to_string(getpid()) + ".elf";
    std::ofstream(sPath, std::ios::binary).write(aBytes.data(), static_cast<std::streamsize>(aBytes.size()));
    pFile = ELF_Open(sPath.c_str());
    std::filesystem::remove(sPath);
    return pFile;
  }
  std::string NameOfIndex(I32 Index) const {
    return Index < 0 ? "" : NameOf(ELF_GetSymbolHandle(pFile, static_cast<U32>(Index)));
  }
  static std::vector<char> BytesOf(const std::string& sName) {
    std::ifstream Stream(DataPath(sName), std::ios::binary);
    return std::vector<char>(std::istreambuf_iterator<char>(Stream), {});
  }
  // With all places of one row of bytes changed to another row of the same length; there must be one at least.
  static std::vector<char> WithBytes(std::vector<char> aBytes, std::string_view sOldHex, std::string_view sNewHex) {
    const std::vector<U8> aOld = HexBytes(sOldHex), aNew = HexBytes(sNewHex);
    auto At = aBytes.begin();
    for (bool bFirst = true;; bFirst = false) {
      At =
          std::search(At, aBytes.end(), aOld.begin(), aOld.end(), [](char A, U8 B) { return static_cast<U8>(A) == B; });
      EXPECT_FALSE(bFirst && At == aBytes.end()) << sOldHex;
      if (At == aBytes.end()) return aBytes;
      At = std::copy(aNew.begin(), aNew.end(), At);
    }
  }
  // With one byte of a section's header changed; for small little-endian files.
  std::vector<char> WithSectionByte(const std::string& sName, const char* sSection, size_t Field, char Value) {
    constexpr size_t HEADER_SIZE = 40;
    std::vector<char> aBytes = BytesOf(sName);
    Open(sName);
    const size_t Headers = static_cast<U8>(aBytes[32]) | static_cast<U8>(aBytes[33]) << 8;
    aBytes[Headers + static_cast<size_t>(ELF_FindSection(pFile, sSection)) * HEADER_SIZE + Field] = Value;
    return aBytes;
  }
  static std::string NameOf(ELF_SYM_HANDLE hSym) {
    const char* sName = ELF_GetName(hSym);
    return sName ? sName : "";
  }
  // First entry of that name in a list of the open file, 0 if there is none. With bCode one that has code.
  ELF_SYM_HANDLE Find(U32 (*pfCount)(const ELF_FILE*), ELF_SYM_HANDLE (*pfGet)(const ELF_FILE*, U32),
                      const std::string& sName, bool bCode = false) const {
    for (U32 i = 0; i < pfCount(pFile); ++i) {
      const ELF_SYM_HANDLE hSym = pfGet(pFile, i);
      if (NameOf(hSym) == sName && (!bCode || ELF_GetNumRanges(hSym) != 0)) return hSym;
    }
    return 0;
  }
  ELF_SYM_HANDLE Function(const std::string& sName) const {
    return Find(ELF_GetNumFunctions, ELF_GetFunction, sName, true);
  }
  static ELF_SYM_HANDLE Local(ELF_SYM_HANDLE hFunc, const std::string& sName) {
    for (U32 i = 0; i < ELF_GetNumLocals(hFunc); ++i) {
      if (NameOf(ELF_GetLocal(hFunc, i)) == sName) return ELF_GetLocal(hFunc, i);
    }
    return 0;
  }
  ELF_SYM_HANDLE Variable(const std::string& sName) const {
    return Find(ELF_GetNumGlobalVars, ELF_GetGlobalVar, sName);
  }
};
