#include "elf_fixture.h"
#include "hex_bytes.h"
#include "program/elf/addr_list.h"
#include "program/elf/location_expr.h"

namespace {

// All of a location in one line.
std::string Describe(const ELF_SYM_LOC& Loc) {
  if (Loc.Type == ELF_LOC_NONE) return "-";
  if (Loc.Type == ELF_LOC_CONST) return "const " + std::to_string(static_cast<I64>(Loc.Value));
  const char* sOuter = Loc.Type == ELF_LOC_STACK_VALUE   ? "value "
                       : Loc.Type == ELF_LOC_ENTRY_VALUE ? "entry "
                                                         : nullptr;
  return sOuter ? sOuter + Describe(ELF_GetInnerLocation(Loc)) : ELF_GetLocationText(Loc);
}

class CTestContext : public IExprContext {
public:
  std::vector<U8> aPool = HexBytes("10000020 00040020");
  std::string sMessage;

  std::optional<U64> IndexedAddress(U64 Index) override {
    return ADDRESS_POOL{aPool.data(), aPool.size(), 0, 4, false}.Get(Index);
  }
  ELF_SYM_LOC Cfa() override {
    ELF_SYM_LOC Loc;
    Loc.Type = ELF_LOC_REG_OFFSET;
    Loc.Reg = 13;
    Loc.Offset = 16;
    return Loc;
  }
  void Complain(const char* sText) override { sMessage = sText; }
};

struct EXPR_CASE {
  const char* sBytes;
  const char* sPlace;
  const char* sFrameBase = nullptr;  // as DW_AT_frame_base, where it differs
  const char* sMessage = "";
};

constexpr const char* TOO_LONG = "DW_OP_implicit_value with data size greater than 8 bytes is not supported";
constexpr const char* NO_ENTRY = "'DW_OP_entry_value' operation encountered that does not specify an entry location.";

constexpr EXPR_CASE EXPR_CASES[] = {
    {"03 10000020", "[20000010]"},
    {"03 10000020 23 08", "[20000018]"},
    {"03 10000020 9f", "value [20000010]"},
    {"08 ff", "const 255"},
    {"09 ff", "const -1"},
    {"0a 0080", "const 32768"},
    {"0b 0080", "const -32768"},
    {"0d ffffffff", "const -1"},
    {"0e 0100000001000000", "const 4294967297"},
    {"11 7f 9f", "value const -1"},
    {"3f 9f", "value const 15"},
    {"53", "R3"},
    {"90 8002", "R256"},
    {"53 9f", "value R3"},
    {"53 93 04 54 93 04", "-"},
    {"77 78", "[R7 - 8]", "R7 - 8"},
    {"77 00", "[R7]", "R7"},
    {"77 78 9f", "value [R7 - 8]", "value R7 - 8"},
    {"77 78 23 10", "[R7 + 8]", "R7 + 8"},
    {"92 0d 10", "[R13 + 16]", "R13 + 16"},
    {"70 00 71 00 1c 9f", "-"},
    {"91 6c", "[BP - 20]"},
    {"91 6c 06", "-"},
    {"91 6c 96", "[BP - 20]"},
    {"91 ffffffff0f", "[BP - 1]"},
    {"23 0c", "Parent loc + 12"},
    {"9c", "R13 + 16"},
    {"9e 04 0000803f", "const 1065353216"},
    {"9e 0a 01000000000000000200", "const 1", nullptr, TOO_LONG},
    {"a1 01", "[20000400]"},
    {"fb 00", "[20000010]"},
    {"a1 02", "-"},
    {"a2 01 9f", "value const 536871936"},
    {"a3 01 50", "entry R0"},
    {"f3 01 51 9f", "value entry R1"},
    {"a3 02 7d 08", "entry [R13 + 8]", "entry R13 + 8"},
    {"a3 00", "-", nullptr, NO_ENTRY},
    {"a3 06 a3 04 a3 02 a3 00", "-", nullptr, NO_ENTRY},
    {"a3 03 50 23 01", "-", nullptr, NO_ENTRY},
    {"a0 10000000 00", "-"},
    {"fa 10000000 9f", "-"},
    // Damage.
    {"", "-"},
    {"03 100000", "-"},
    {"50 e7", "-"},
    {"9e ff01 00", "-"},
    {"91 80", "-"},
};

}  // namespace

TEST(Location, Expressions) {
  for (const EXPR_CASE& Case : EXPR_CASES) {
    for (const bool bFrameBase : {false, true}) {
      SCOPED_TRACE(Case.sBytes);
      CTestContext Context;
      const std::vector<U8> aBytes = HexBytes(Case.sBytes);
      const ELF_SYM_LOC Loc = TranslateExpr(CursorOver(aBytes), {}, bFrameBase, Context);
      EXPECT_EQ(Describe(Loc), bFrameBase && Case.sFrameBase ? Case.sFrameBase : Case.sPlace);
      EXPECT_EQ(Context.sMessage, Case.sMessage);
    }
  }
}

TEST(Location, ExpressionsInTheSizesAndByteOrderOfTheUnit) {
  CTestContext Context;
  const std::vector<U8> aBigAddr = HexBytes("03 20000010"), aBigValue = HexBytes("9e 02 1234");
  EXPECT_EQ(Describe(TranslateExpr(CursorOver(aBigAddr, true), {}, false, Context)), "[20000010]");
  EXPECT_EQ(Describe(TranslateExpr(CursorOver(aBigValue, true), {}, false, Context)), "const 4660");
  const std::vector<U8> aWideAddr = HexBytes("03 1000002000000000"), aOffset64 = HexBytes("9a 0000000000000000");
  EXPECT_EQ(Describe(TranslateExpr(CursorOver(aWideAddr), {8, 4}, false, Context)), "[20000010]");
  CByteCursor Bytes = CursorOver(aOffset64);
  ReadOperation(Bytes, {4, 8});
  EXPECT_TRUE(Bytes.Ok() && !Bytes.More());
}

TEST(Location, ListsAtEveryBoundary) {
  const char* sPairs =
      "00000000 10000000 0100 50  10000000 10000000 0100 51  10000000 20000000 0000"
      "ffffffff 00000020  20000000 30000000 0100 52  00000000 00000000  00000000 ffffffff 0100 53";
  const char* sKinds =
      "04 00 10 01 50  01 00 04 00 10 01 51  05 01 5f  06 00300000 09 01 02 04 10 20 01 52"
      "02 00 01 01 53  03 01 08 01 54  07 00500000 00500000 01 55  08 00600000 04 01 56  00  04 00 ff 01 57";
  // version, list, pc, register
  const std::tuple<U32, const char*, U32, const char*> aCases[] = {
      {4, sPairs, 0, "R0"},
      {4, sPairs, 0x7FFF, "-"},
      {4, sPairs, 0x8000, "R0"},
      {4, sPairs, 0x800F, "R0"},
      {4, sPairs, 0x8010, "R1"},  // an empty range holds at its address
      {4, sPairs, 0x8011, "-"},   // optimised out
      {4, sPairs, 0x8020, "-"},
      {4, sPairs, 0x20000020, "R2"},
      {4, sPairs, 0x20000030, "-"},
      {2, "00000000 ffffffff 0100 50", 0xFFFFFFFE, "R0"},  // ends beyond the address space
      {5, sKinds, 0, "R0"},
      {5, sKinds, 0x8000, "R0"},
      {5, sKinds, 0x8010, "R15"},
      {5, sKinds, 0x2000000C, "R15"},
      {5, sKinds, 0x20000010, "R1"},
      {5, sKinds, 0x3010, "R2"},
      {5, sKinds, 0x200003FF, "R3"},
      {5, sKinds, 0x20000400, "R4"},
      {5, sKinds, 0x5000, "R5"},
      {5, sKinds, 0x6003, "R6"},
      {5, sKinds, 0x80FE, "R15"},  // what follows the end is another list
      // Damage ends a list.
      {4, "00000000 10000000 0100", 0x8000, "-"},
      {4, "00000000 10000000 ffff 50", 0x8000, "-"},
      {4, "10000000 20000000 0100 50 0000", 0x8010, "R0"},
      {5, "04 00 10 01 50", 0x8010, "-"},
      {5, "04 00 10 ffffffffffffffffff01 50", 0x8000, "-"},
      {5, "2a 00 10 01 50", 0x8000, "-"},
      {5, "03 07 10 01 50", 0x8000, "-"},
  };
  CTestContext Context;
  const LIST_CONTEXT List{0x8000, 4, {Context.aPool.data(), Context.aPool.size(), 0, 4, false}};
  for (const auto& [Version, sBytes, PC, sPlace] : aCases) {
    const std::vector<U8> aBytes = HexBytes(sBytes);
    const CByteCursor Expr = FindLocation({CAddrListReader::LOCATIONS, CursorOver(aBytes), Version, List}, PC);
    EXPECT_EQ(Describe(TranslateExpr(Expr, {}, false, Context)), sPlace) << sBytes << " at " << std::hex << PC;
  }
}

TEST(Location, RangeLists) {
  // version, list, ranges, the list ends soundly
  const std::tuple<U32, const char*, const char*, bool> aCases[] = {
      {4, "00000000 10000000 ffffffff 00000020 20000000 30000000 00000000 00000000 00000000 01000000",
       "8000-8010 20000020-20000030 ", true},
      {5,
       "04 00 10 06 00100000 04100000 01 01 04 00 10 05 00300000 04 10 20 02 00 01 03 01 08 07 00500000 04 00 04 00 01",
       "8000-8010 1000-1004 20000400-20000410 3010-3020 20000010-20000400 20000400-20000408 5000-5004 ", true},
      {4, "00000000 10000000 20000000", "8000-8010 ", false},
      {5, "04 00 10", "8000-8010 ", false},
      {5, "04 00 10 08", "8000-8010 ", false},
      {5, "01 02 04 00 10 00", "", false},  // no such address
      {5, "06 0010", "", false},
  };
  CTestContext Context;
  const LIST_CONTEXT List{0x8000, 4, {Context.aPool.data(), Context.aPool.size(), 0, 4, false}};
  for (const auto& [Version, sBytes, sRanges, bOk] : aCases) {
    const std::vector<U8> aBytes = HexBytes(sBytes);
    CAddrListReader Reader(CAddrListReader::RANGES, CursorOver(aBytes), Version, List);
    std::string sFound;
    for (LIST_ENTRY Range; Reader.Next(Range);) {
      char acText[48];
      std::snprintf(acText, sizeof(acText), "%llX-%llX ", Range.Low, Range.High);
      sFound += acText;
    }
    EXPECT_EQ(sFound, sRanges) << sBytes;
    EXPECT_EQ(Reader.Ok(), bOk) << sBytes;
  }
}

TEST(Location, Texts) {
  // kind, register, offset; the text
  const std::tuple<U32, U32, I32, const char*> aCases[] = {
      {ELF_LOC_MEM_OFFSET, 0, 0, "[ABC]"},
      {ELF_LOC_MEM_OFFSET, 0, -4, "[ABC] - 4"},
      {ELF_LOC_REG, ELF_REG_UNSPECIFIED, 0, "unspecified"},
      {ELF_LOC_REG_OFFSET, ELF_REG_SAME_AS_CALLER, 4, "same as caller + 4"},
      {ELF_LOC_REG_INDIRECT, 0, 0, "[R9 + 4]"},
      {ELF_LOC_REG_INDIRECT, 0, 2, "[R9] + 2"},
      {ELF_LOC_SP_OFFSET, 0, INT32_MIN, "SP - 2147483648"},
      {ELF_LOC_BP_OFFSET, 0, 8, "BP + 8"},
      {ELF_LOC_CFA_OFFSET, 0, 0, "CFA"},
      {ELF_LOC_SP_INDIRECT, 0, 8, "[SP + 8]"},
      {ELF_LOC_CFA_INDIRECT, 0, -8, "[CFA - 8]"},
      {ELF_LOC_PARENT_VALUE, 0, 4, "Parent value + 4"},
      {ELF_LOC_PARENT_LOC, 0, 0, "Parent loc"},
      {ELF_LOC_ENTRY_VALUE, 0, 0, "? (on entry)"},
      {ELF_LOC_ENTRY_VALUE, 0, 1, "R9 + 4 (on entry)"},
      {ELF_LOC_STACK_VALUE, 0, 0, "N/A"},
      {17, 0, 0, "N/A"},
  };
  for (const auto& [Type, Reg, Offset, sText] : aCases) {
    const ELF_SYM_LOC Loc = {Type, 0xABC, Reg, Offset, ELF_LOC_REG_OFFSET, 0, 9, 4, 0};
    EXPECT_STREQ(ELF_GetLocationText(Loc), sText);
  }
}

using ElfLocation = CElfTest;

TEST_F(ElfLocation, SymbolsAndRelocatedPlaces) {
  Open("gcc_dwarf2_O0.elf");
  const ELF_SYM_HANDLE hFramed = Function("Accumulate");
  for (const auto& [Distance, sFrameBase] : {std::pair(4u, "R13 + 24"), std::pair(6u, "R7 + 24")}) {
    EXPECT_EQ(Describe(ELF_GetLocation(hFramed, ELF_GetRangeLow(hFramed, 0) + Distance)), sFrameBase);
  }
  Open("gcc_dwarf5_O2.elf");
  ELF_SYM_HANDLE hData = 0, hCode = 0;
  for (U32 i = 0; i < ELF_GetNumSymbols(pFile); ++i) {
    const ELF_SYM_HANDLE hSym = ELF_GetSymbolHandle(pFile, i);
    if (NameOf(hSym) == "Samples") hData = hSym;
    if (NameOf(hSym) == "Accumulate") hCode = hSym;
  }
  EXPECT_EQ(Describe(ELF_GetLocation(hData, 0)), "[20000014]");
  EXPECT_EQ(Describe(ELF_GetLocation(hCode, 0)), "-");
  EXPECT_EQ(Describe(ELF_GetLocation(0, 0)), "-");
  const ELF_SYM_HANDLE hFunc = Function("Accumulate"), hCount = Local(hFunc, "Count");
  const U32 Low = ELF_GetRangeLow(hFunc, 0);
  ELF_AddRelocation("*", 0x1000);
  EXPECT_EQ(Describe(ELF_GetLocation(Variable("Samples"), 0)), "[20001014]");
  EXPECT_EQ(Describe(ELF_GetLocation(hCount, Low + 0x1010)), "R12");
}
