#include "bench/long/decoder_compare/spelling.h"

#include <algorithm>
#include <bit>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <vector>

namespace {

bool IsWordChar(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '.';
}

std::string WithoutComment(const std::string& sText) {
  std::string sRest = sText.substr(0, sText.find_first_of(";@"));
  const size_t Slashes = sRest.find("//");
  if (Slashes != std::string::npos) sRest.resize(Slashes);
  const size_t Angle = sRest.find(" <");
  if (Angle != std::string::npos) sRest.resize(Angle);
  while (!sRest.empty() && std::isspace(static_cast<unsigned char>(sRest.back())) != 0) sRest.pop_back();
  while (!sRest.empty() && std::isspace(static_cast<unsigned char>(sRest.front())) != 0) sRest.erase(0, 1);
  return sRest;
}

const std::map<std::string, std::string>& Aliases() {
  static const std::map<std::string, std::string> Table = {
      {"sp", "r13"}, {"lr", "r14"}, {"pc", "r15"}, {"ip", "r12"}, {"fp", "r11"}, {"sl", "r10"}, {"sb", "r9"},
  };
  return Table;
}

std::string Number(U32 Value) {
  return std::to_string(static_cast<I32>(Value));
}

// "r3", "d4", "s5" of a list or operand: letter and number, -1 for none.
int RegIndex(const std::string& sWord) {
  if (sWord.size() < 2 || std::string("rdsq").find(sWord[0]) == std::string::npos) return -1;
  for (size_t i = 1; i < sWord.size(); ++i) {
    if (std::isdigit(static_cast<unsigned char>(sWord[i])) == 0) return -1;
  }
  return std::atoi(sWord.c_str() + 1);
}

std::string OneWord(const std::string& sWord, const ENCODING& Encoding, bool bImmediate) {
  const auto Alias = Aliases().find(sWord);
  if (Alias != Aliases().end()) return Alias->second;
  if (std::isdigit(static_cast<unsigned char>(sWord[0])) == 0) return sWord;
  if (sWord.find('.') != std::string::npos) {
    char sValue[32];
    std::snprintf(sValue, sizeof(sValue), "%g", std::atof(sWord.c_str()));
    return sValue;
  }
  const bool bHex = sWord.starts_with("0x");
  const U32 Value = static_cast<U32>(std::strtoull(sWord.c_str(), nullptr, bHex ? 16 : 10));
  if (!bImmediate && bHex && sWord.size() == 10) return "#" + Number(Value - Encoding.PC());  // a target
  return Number(Value);
}

// Words are put in their common form one by one; everything else stays, but for blanks.
std::string Operands(const std::string& sText, const ENCODING& Encoding) {
  std::string sOut;
  int ListStart = -1;
  char ListLetter = 0;
  for (size_t i = 0; i < sText.size();) {
    if (!IsWordChar(sText[i])) {
      if (sText[i] == '-' && i > 0 && i + 1 < sText.size() && !sOut.empty() && ListStart >= 0) {
        ++i;
        while (i < sText.size() && sText[i] == ' ') ++i;
        std::string sLast;
        while (i < sText.size() && IsWordChar(sText[i])) sLast += sText[i++];
        const int Last = RegIndex(OneWord(sLast, Encoding, false));
        for (int Reg = ListStart + 1; Reg <= Last; ++Reg) sOut += std::string(",") + ListLetter + std::to_string(Reg);
        ListStart = -1;
        continue;
      }
      if (std::isspace(static_cast<unsigned char>(sText[i])) == 0) {
        sOut += sText[i];
        ListStart = -1;
      }
      ++i;
      continue;
    }
    std::string sWord;
    while (i < sText.size() && IsWordChar(sText[i])) sWord += sText[i++];
    const std::string sNew =
        OneWord(sWord, Encoding, !sOut.empty() && (sOut.back() == '#' || sOut.back() == '-' || sOut.back() == '{'));
    ListStart = RegIndex(sNew);
    ListLetter = sNew[0];
    sOut += sNew;
  }
  return sOut;
}

void Replace(std::string& sText, const std::string& sFrom, const std::string& sTo) {
  for (size_t Pos = sText.find(sFrom); Pos != std::string::npos; Pos = sText.find(sFrom, Pos + sTo.size())) {
    sText.replace(Pos, sFrom.size(), sTo);
  }
}

bool IsOneOf(const std::string& sStem, std::initializer_list<const char*> Names) {
  return std::any_of(Names.begin(), Names.end(), [&](const char* sName) { return sStem.starts_with(sName); });
}

// "lo" and "hs" are other names of conditions.
void UnifyCondition(std::string& sMnemonic) {
  const size_t Dot = sMnemonic.find('.');
  const size_t End = Dot == std::string::npos ? sMnemonic.size() : Dot;
  if (End < 3) return;
  const std::string sLast = sMnemonic.substr(End - 2, 2);
  if (sLast == "lo") sMnemonic.replace(End - 2, 2, "cc");
  if (sLast == "hs") sMnemonic.replace(End - 2, 2, "cs");
}

// A rotated constant given as its byte and the rotation.
void UnifyRotation(std::string& sOperands) {
  unsigned Byte = 0, Rotation = 0;
  const size_t Hash = sOperands.find('#');
  if (Hash == std::string::npos || Hash == 0) return;
  if (std::sscanf(sOperands.c_str() + Hash, "#%u,#%u", &Byte, &Rotation) != 2 &&
      std::sscanf(sOperands.c_str() + Hash, "#%u,%u", &Byte, &Rotation) != 2) {
    return;
  }
  if (Byte > 255 || Rotation > 30) return;
  sOperands = sOperands.substr(0, Hash + 1) + Number(std::rotr(Byte, static_cast<int>(Rotation)));
}

// Coprocessor operands are "p15, #0, c1" or "15, 0, cr1".
std::string PlainCoprocessor(const std::string& sOperands) {
  std::string sOut;
  for (size_t i = 0; i < sOperands.size(); ++i) {
    const bool bStart = i == 0 || sOperands[i - 1] == ',';
    if (sOperands[i] == '[') return sOut + sOperands.substr(i);
    if (bStart && (sOperands[i] == 'p' || sOperands[i] == 'c')) {
      if (sOperands[i + 1] == 'r') ++i;
      continue;
    }
    if (std::string("#{}").find(sOperands[i]) == std::string::npos) sOut += sOperands[i];
  }
  return sOut;
}

void UnifyStack(std::string& sMnemonic, std::string& sOperands) {
  const bool bWriteBack = sOperands.starts_with("r13!,{") && sOperands.back() == '}';
  const size_t Comma = sOperands.find(',');
  const auto IsSingle = [&](const char* sRest) {
    return Comma != std::string::npos && sOperands.substr(Comma) == sRest;
  };
  const auto Turn = [&](const char* sFrom, const char* sTo) {
    sMnemonic = sTo + sMnemonic.substr(std::string(sFrom).size());
  };
  if (bWriteBack && IsOneOf(sMnemonic, {"stmdb", "stmfd"})) {
    Turn("stmdb", "push");
    sOperands = sOperands.substr(5);
  } else if (bWriteBack && IsOneOf(sMnemonic, {"ldmfd", "ldmia"})) {
    Turn("ldmfd", "pop");
    sOperands = sOperands.substr(5);
  } else if (bWriteBack && sMnemonic.starts_with("ldm") && !IsOneOf(sMnemonic, {"ldmdb", "ldmib", "ldmda"})) {
    Turn("ldm", "pop");
    sOperands = sOperands.substr(5);
  } else if (IsSingle(",[r13],#4") && sMnemonic.starts_with("ldr") && sMnemonic.size() != 4) {
    Turn("ldr", "pop");
    sOperands = "{" + sOperands.substr(0, Comma) + "}";
  } else if (IsSingle(",[r13,#-4]!") && sMnemonic.starts_with("str") && sMnemonic.size() != 4) {
    Turn("str", "push");
    sOperands = "{" + sOperands.substr(0, Comma) + "}";
  }
  if (IsOneOf(sMnemonic, {"ldmia", "stmia", "ldmfd"})) sMnemonic = sMnemonic.substr(0, 3) + sMnemonic.substr(5);
}

// Numbers that are written in a form of their own: with an exponent, or as digits of base 16 without a prefix.
std::string PlainNumbers(std::string sText, bool bOurs) {
  const size_t Hash = sText.find('#');
  if (Hash == std::string::npos) return sText;
  if (bOurs && sText.starts_with("udf")) return sText.substr(0, Hash + 1) + "0x" + sText.substr(Hash + 1);
  const bool bExponent = sText.find("e+", Hash) != std::string::npos || sText.find("e-", Hash) != std::string::npos;
  if (!bExponent && !(sText.starts_with("vcmp") && sText.ends_with("#0.0"))) return sText;
  char sValue[32];
  std::snprintf(sValue, sizeof(sValue), "%g", std::atof(sText.c_str() + Hash + 1));
  return sText.substr(0, Hash + 1) + sValue;
}

// The second register of a pair that follows from the first.
void UnifyPair(std::string& sOperands) {
  const size_t Comma = sOperands.find(',');
  if (Comma == std::string::npos || sOperands[Comma + 1] != '[') return;
  sOperands.insert(Comma, ",r" + std::to_string((RegIndex(sOperands.substr(0, Comma)) + 1) & 15));
}

// An address made by adding to the PC.
void UnifyAdr(std::string& sMnemonic, std::string& sOperands) {
  const size_t Pos = sOperands.find(",r15,#");
  if (Pos == std::string::npos || sMnemonic.size() < 3 || sMnemonic.find('s', 3) == 3) return;
  const bool bAdd = sMnemonic.starts_with("add");
  if (!bAdd && !sMnemonic.starts_with("sub")) return;
  const I64 Offset = std::atoll(sOperands.c_str() + Pos + 6);
  sOperands = sOperands.substr(0, Pos) + ",#" + Number(static_cast<U32>(bAdd ? Offset : -Offset));
  sMnemonic = "adr" + sMnemonic.substr(3);
}

// A preload that names its address by the PC.
void UnifyPreload(std::string& sOperands) {
  if (sOperands.starts_with("[r15,#") && sOperands.ends_with("]"))
    sOperands = sOperands.substr(5, sOperands.size() - 6);
}

// A move of a shifted register is a shift.
void UnifyShift(std::string& sMnemonic, std::string& sOperands) {
  const size_t Comma = sOperands.rfind(',');
  if (!sMnemonic.starts_with("mov") || Comma == std::string::npos) return;
  if (sOperands.ends_with(",rrx")) {
    sMnemonic = "rrx" + sMnemonic.substr(3);
    sOperands.resize(Comma);
    return;
  }
  const std::string sShift = sOperands.substr(Comma + 1, 3);
  if (sShift != "lsl" && sShift != "lsr" && sShift != "asr" && sShift != "ror") return;
  sMnemonic = sShift + sMnemonic.substr(3);
  sOperands.erase(Comma + 1, 3);
}

void UnifyStatusReg(std::string& sOperands) {
  for (const auto& [sFrom, sTo] :
       {std::pair{"apsr_nzcvqg", "cpsr_fs"}, {"apsr_nzcvq", "cpsr_f"}, {"apsr_g", "cpsr_s"}}) {
    Replace(sOperands, sFrom, sTo);
  }
  if (sOperands.ends_with("apsr")) sOperands.replace(sOperands.size() - 4, 4, "cpsr");
}

}  // namespace

std::string CommonSpelling(const std::string& sText, const ENCODING& Encoding, bool bOurs) {
  std::string sRest = WithoutComment(sText);
  for (char& c : sRest) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  sRest = PlainNumbers(sRest, bOurs);
  const size_t End = sRest.find_first_of(" \t");
  std::string sMnemonic = sRest.substr(0, End);
  for (const char* sSuffix : {".w", ".n"}) {
    if (sMnemonic.ends_with(sSuffix)) sMnemonic.resize(sMnemonic.size() - 2);
  }
  UnifyCondition(sMnemonic);
  if (IsOneOf(sMnemonic, {"vldr", "vstr"})) sMnemonic = sMnemonic.substr(0, sMnemonic.find('.'));
  std::string sOperands = End == std::string::npos ? "" : Operands(sRest.substr(End), Encoding);
  Replace(sOperands, "#--", "#-");
  if (IsOneOf(sMnemonic, {"and", "eor", "sub", "rsb", "add", "adc", "sbc", "rsc", "tst", "teq", "cmp", "cmn", "orr",
                          "mov", "bic", "mvn", "msr"})) {
    UnifyRotation(sOperands);
  }
  if (IsOneOf(sMnemonic, {"mcr", "mrc", "mrrc", "cdp", "ldc", "stc"})) sOperands = PlainCoprocessor(sOperands);
  if (IsOneOf(sMnemonic, {"mrs", "msr"})) UnifyStatusReg(sOperands);
  UnifyStack(sMnemonic, sOperands);
  UnifyShift(sMnemonic, sOperands);
  if (IsOneOf(sMnemonic, {"pld", "pli"})) UnifyPreload(sOperands);
  if (sMnemonic.starts_with("it") && sOperands == "al") sOperands = "";
  if (IsOneOf(sMnemonic, {"hint", "nop"})) sMnemonic = "nop", sOperands = "";
  if (sOperands.starts_with("r13,#") && IsOneOf(sMnemonic, {"add", "sub"})) sOperands.insert(4, "r13,");
  UnifyAdr(sMnemonic, sOperands);
  if (sMnemonic.starts_with("adrw")) sMnemonic.erase(3, 1);
  if (Encoding.bArm && IsOneOf(sMnemonic, {"ldrd", "strd"})) UnifyPair(sOperands);
  Replace(sOperands, "rrx#1", "rrx");
  if (sMnemonic.starts_with("vmov") && sMnemonic.ends_with(".32") && sMnemonic.find(".f") == std::string::npos)
    sMnemonic.resize(sMnemonic.size() - 3);
  Replace(sOperands, "fpcxt_", "fpcxt");
  if (IsOneOf(sMnemonic, {"vlldm", "vlstm"})) sOperands.resize(std::min(sOperands.find(','), sOperands.size()));
  Replace(sOperands, ",#0]!", "]!");
  if (IsOneOf(sMnemonic, {"vldmia", "vstmia"})) sMnemonic = sMnemonic.substr(0, 4) + sMnemonic.substr(6);
  return sOperands.empty() ? sMnemonic : sMnemonic + " " + sOperands;
}

std::string MnemonicOf(const std::string& sCommon, const ENCODING& Encoding) {
  std::string sMnemonic = sCommon.substr(0, sCommon.find(' '));
  const size_t Dot = std::min(sMnemonic.find('.'), sMnemonic.size());
  if (Encoding.bArm && Encoding.Word >> 28 < 14 && Dot > 2) sMnemonic.erase(Dot - 2, 2);
  return sMnemonic;
}
