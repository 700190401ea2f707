#include "core/decoder/simd_list.h"

namespace {

constexpr U32 NUM_DOUBLES = 32;

U32 FirstReg(const INST& Inst) {
  return Inst.Bits(22, 1) << 4 | Inst.Bits(12, 4);
}

SIMD_LIST Checked(SIMD_LIST List, bool bValid) {
  List.bValid = bValid && List.First + (List.Count - 1) * List.Step < NUM_DOUBLES;
  return List;
}

// By bits 11:8. Structs is the number of elements in a structure.
struct WHOLE_FORM {
  U8 Structs;
  U8 Count;
  U8 Step;
};
constexpr WHOLE_FORM aWhole[16] = {{4, 4, 1}, {4, 4, 2}, {1, 4, 1}, {2, 4, 1}, {3, 3, 1}, {3, 3, 2},
                                   {1, 3, 1}, {1, 1, 1}, {2, 2, 1}, {2, 2, 2}, {1, 2, 1}};

}  // namespace

SIMD_LIST SimdWholeList(const INST& Inst) {
  constexpr U32 aAlignment[] = {0, 64, 128, 256};
  const WHOLE_FORM& Form = aWhole[Inst.Bits(8, 4)];
  const U32 Align = Inst.Bits(4, 2);
  const bool bOdd = Form.Count == 1 || Form.Count == 3;
  const bool bAlignValid = bOdd ? Align < 2 : Form.Count == 4 || Align < 3;
  const bool bSizeValid = Form.Structs == 1 || Inst.Bits(6, 2) != 3;
  SIMD_LIST List{.First = FirstReg(Inst), .Count = Form.Count, .Step = Form.Step, .Alignment = aAlignment[Align]};
  return Checked(List, bAlignValid && bSizeValid);
}

SIMD_LIST SimdLaneList(const INST& Inst) {
  const U32 Size = Inst.Bits(10, 2);
  const U32 IndexAlign = Inst.Bits(4, 4);
  const U32 Count = Inst.Bits(8, 2) + 1;
  const bool bAligned = (IndexAlign & 1) != 0;
  const U32 Low = IndexAlign & ((1u << Size) - 1);  // the bits below those of a step of 2
  SIMD_LIST List{.First = FirstReg(Inst), .Count = Count, .ElementBits = 8u << Size, .Lane = IndexAlign >> (Size + 1)};
  const bool bStep = Size > 0 && (IndexAlign >> Size & 1) != 0;
  List.Step = bStep ? 2 : 1;
  switch (Count) {
    case 1:
      List.Alignment = bAligned ? List.ElementBits : 0;
      return Checked(List, !bStep && (Size == 0 ? !bAligned : Size == 1 || Low == 0 || Low == 3));
    case 2:
      List.Alignment = bAligned ? 2 * List.ElementBits : 0;
      return Checked(List, Size != 2 || (Low & 2) == 0);
    case 3:
      return Checked(List, (Size == 0 ? IndexAlign & 1 : Low) == 0);
    default:
      List.Alignment = Size == 2 ? 64 * Low : bAligned ? 4 * List.ElementBits : 0;
      return Checked(List, Size != 2 || Low != 3);
  }
}

SIMD_LIST SimdAllLanesList(const INST& Inst) {
  constexpr U32 SIZE_ALIGNED_WORDS = 3;  // words of four registers, aligned to all four
  const U32 Size = Inst.Bits(6, 2);
  const bool bTwo = Inst.Bit(5);
  const bool bAligned = Inst.Bit(4);
  const U32 Structs = Inst.Bits(8, 2) + 1;
  SIMD_LIST List{.First = FirstReg(Inst), .Count = Structs, .ElementBits = Size < 3 ? 8u << Size : 32};
  if (Structs == 1) {
    List.Count = bTwo ? 2 : 1;
    List.Alignment = bAligned ? List.ElementBits : 0;
    return Checked(List, Size != 3 && !(Size == 0 && bAligned));
  }
  List.Step = bTwo ? 2 : 1;
  if (Structs == 2) {
    List.Alignment = bAligned ? 2 * List.ElementBits : 0;
    return Checked(List, Size != 3);
  }
  if (Structs == 3) return Checked(List, Size != 3 && !bAligned);
  List.Alignment = !bAligned ? 0 : Size == SIZE_ALIGNED_WORDS ? 128 : Size == 2 ? 64 : 4 * List.ElementBits;
  return Checked(List, Size != SIZE_ALIGNED_WORDS || bAligned);
}
