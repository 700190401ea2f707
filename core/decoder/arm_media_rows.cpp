// ARM encodings: media instructions, divide, bit fields.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Parallel addition and subtraction
  {"cccc 0110 0001 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "SADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0001 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "SASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0001 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "SSAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0001 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "SSUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0001 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "SADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0001 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "SSUB8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "QADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "QASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "QSAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "QSUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "QADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0010 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "QSUB8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "SHADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "SHASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "SHSAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "SHSUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "SHADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0011 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "SHSUB8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "UADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "UASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "USAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "USUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "UADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0101 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "USUB8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "UQADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "UQASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "UQSAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "UQSUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "UQADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0110 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "UQSUB8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 0001 mmmm", 6, KIND_PLAIN, "UHADD16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 0011 mmmm", 6, KIND_PLAIN, "UHASX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 0101 mmmm", 6, KIND_PLAIN, "UHSAX<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 0111 mmmm", 6, KIND_PLAIN, "UHSUB16<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 1001 mmmm", 6, KIND_PLAIN, "UHADD8<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 0111 nnnn dddd 1111 1111 mmmm", 6, KIND_PLAIN, "UHSUB8<c>\t<R12>, <R16>, <R0>"},

  // Packing, selection, saturation, reversal
  {"cccc 0110 1000 nnnn dddd iiiii 001 mmmm", 6, KIND_PLAIN, "PKHBT<c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 0110 1000 nnnn dddd iiiii 101 mmmm", 6, KIND_PLAIN, "PKHTB<c>\t<R12>, <R16>, <R0><armshift>"},
  {"cccc 0110 1000 nnnn dddd 1111 1011 mmmm", 6, KIND_PLAIN, "SEL<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0110 1010 iiii dddd 1111 0011 nnnn", 6, KIND_PLAIN, "SSAT16<c>\t<R12>, <count16.4>, <R0>"},
  {"cccc 0110 1110 iiii dddd 1111 0011 nnnn", 6, KIND_PLAIN, "USAT16<c>\t<R12>, <dec16.4>, <R0>"},
  {"cccc 0110 101 iiiii dddd iiiii t01 nnnn", 6, KIND_PLAIN, "SSAT<c>\t<R12>, <count16.5>, <R0><armshift>"},
  {"cccc 0110 111 iiiii dddd iiiii t01 nnnn", 6, KIND_PLAIN, "USAT<c>\t<R12>, <dec16.5>, <R0><armshift>"},
  {"cccc 0110 1011 1111 dddd 1111 0011 mmmm", 6, KIND_PLAIN, "REV<c>\t<R12>, <R0>"},
  {"cccc 0110 1011 1111 dddd 1111 1011 mmmm", 6, KIND_PLAIN, "REV16<c>\t<R12>, <R0>"},
  {"cccc 0110 1111 1111 dddd 1111 0011 mmmm", 7, KIND_PLAIN, "RBIT<c>\t<R12>, <R0>"},
  {"cccc 0110 1111 1111 dddd 1111 1011 mmmm", 6, KIND_PLAIN, "REVSH<c>\t<R12>, <R0>"},

  // Extend, extend and add
  {"cccc 0110 1000 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTB16<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1000 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTAB16<c>\t<R12>, <R16>, <R0><rotation10>"},
  {"cccc 0110 1100 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTB16<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1100 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTAB16<c>\t<R12>, <R16>, <R0><rotation10>"},
  {"cccc 0110 1010 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTB<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1010 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTAB<c>\t<R12>, <R16>, <R0><rotation10>"},
  {"cccc 0110 1110 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTB<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1110 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTAB<c>\t<R12>, <R16>, <R0><rotation10>"},
  {"cccc 0110 1011 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTH<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1011 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "SXTAH<c>\t<R12>, <R16>, <R0><rotation10>"},
  {"cccc 0110 1111 1111 dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTH<c>\t<R12>, <R0><rotation10>"},
  {"cccc 0110 1111 nnnn dddd rr00 0111 mmmm", 6, KIND_PLAIN, "UXTAH<c>\t<R12>, <R16>, <R0><rotation10>"},

  // Multiply and divide
  {"cccc 0111 0000 dddd 1111 mmmm 0001 nnnn", 6, KIND_PLAIN, "SMUAD<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0000 dddd aaaa mmmm 0001 nnnn", 6, KIND_PLAIN, "SMLAD<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0000 dddd 1111 mmmm 0011 nnnn", 6, KIND_PLAIN, "SMUADX<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0000 dddd aaaa mmmm 0011 nnnn", 6, KIND_PLAIN, "SMLADX<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0000 dddd 1111 mmmm 0101 nnnn", 6, KIND_PLAIN, "SMUSD<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0000 dddd aaaa mmmm 0101 nnnn", 6, KIND_PLAIN, "SMLSD<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0000 dddd 1111 mmmm 0111 nnnn", 6, KIND_PLAIN, "SMUSDX<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0000 dddd aaaa mmmm 0111 nnnn", 6, KIND_PLAIN, "SMLSDX<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0100 hhhh llll mmmm 0001 nnnn", 6, KIND_PLAIN, "SMLALD<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0111 0100 hhhh llll mmmm 0011 nnnn", 6, KIND_PLAIN, "SMLALDX<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0111 0100 hhhh llll mmmm 0101 nnnn", 6, KIND_PLAIN, "SMLSLD<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0111 0100 hhhh llll mmmm 0111 nnnn", 6, KIND_PLAIN, "SMLSLDX<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0111 0101 dddd 1111 mmmm 0001 nnnn", 6, KIND_PLAIN, "SMMUL<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0101 dddd aaaa mmmm 0001 nnnn", 6, KIND_PLAIN, "SMMLA<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0101 dddd aaaa mmmm 1101 nnnn", 6, KIND_PLAIN, "SMMLS<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0101 dddd 1111 mmmm 0011 nnnn", 6, KIND_PLAIN, "SMMULR<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0101 dddd aaaa mmmm 0011 nnnn", 6, KIND_PLAIN, "SMMLAR<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0101 dddd aaaa mmmm 1111 nnnn", 6, KIND_PLAIN, "SMMLSR<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0111 0001 dddd 1111 mmmm 0001 nnnn", 7, KIND_PLAIN, "SDIV<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 0011 dddd 1111 mmmm 0001 nnnn", 7, KIND_PLAIN, "UDIV<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 1000 dddd 1111 mmmm 0001 nnnn", 6, KIND_PLAIN, "USAD8<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0111 1000 dddd aaaa mmmm 0001 nnnn", 6, KIND_PLAIN, "USADA8<c>\t<R16>, <R0>, <R8>, <R12>"},

  // Bit fields, permanently undefined
  {"cccc 0111 101 wwwww dddd lllll 101 nnnn", 7, KIND_PLAIN, "SBFX<c>\t<R12>, <R0>, <dec7.5>, <count16.5>"},
  {"cccc 0111 111 wwwww dddd lllll 101 nnnn", 7, KIND_PLAIN, "UBFX<c>\t<R12>, <R0>, <dec7.5>, <count16.5>"},
  {"cccc 0111 110 mmmmm dddd lllll 001 1111", 7, KIND_ARM_BIT_FIELD, "BFC<c>\t<R12>, <dec7.5>, <armwidth>"},
  {"cccc 0111 110 mmmmm dddd lllll 001 nnnn", 7, KIND_ARM_BIT_FIELD, "BFI<c>\t<R12>, <R0>, <dec7.5>, <armwidth>"},
  {"cccc 0111 1111 iiii iiii iiii 1111 iiii", 4, KIND_ARM_ALWAYS, "UDF<c>\t<bareimmgap>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> ArmMediaRows() {
  return aRow;
}
