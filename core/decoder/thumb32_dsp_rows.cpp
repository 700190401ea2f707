// 32-bit Thumb encodings: register data processing, parallel arithmetic, multiply and divide.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Shift by register
  {"11111010 0 00 s nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "LSL<s><c>.W\t<R8>, <R16>, <R0>"},
  {"11111010 0 01 s nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "LSR<s><c>.W\t<R8>, <R16>, <R0>"},
  {"11111010 0 10 s nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "ASR<s><c>.W\t<R8>, <R16>, <R0>"},
  {"11111010 0 11 s nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "ROR<s><c>.W\t<R8>, <R16>, <R0>"},

  // Extend, extend and add
  {"11111010 0 000 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTH<c>.W\t<R8>, <R0><rotation4>"},
  {"11111010 0 000 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTAH<c>\t<R8>, <R16>, <R0><rotation4>"},
  {"11111010 0 001 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTH<c>.W\t<R8>, <R0><rotation4>"},
  {"11111010 0 001 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTAH<c>\t<R8>, <R16>, <R0><rotation4>"},
  {"11111010 0 010 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTB16<c>\t<R8>, <R0><rotation4>"},
  {"11111010 0 010 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTAB16<c>\t<R8>, <R16>, <R0><rotation4>"},
  {"11111010 0 011 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTB16<c>\t<R8>, <R0><rotation4>"},
  {"11111010 0 011 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTAB16<c>\t<R8>, <R16>, <R0><rotation4>"},
  {"11111010 0 100 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTB<c>.W\t<R8>, <R0><rotation4>"},
  {"11111010 0 100 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "SXTAB<c>\t<R8>, <R16>, <R0><rotation4>"},
  {"11111010 0 101 1111 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTB<c>.W\t<R8>, <R0><rotation4>"},
  {"11111010 0 101 nnnn 1111 dddd 10 rr mmmm", 7, KIND_PLAIN, "UXTAB<c>\t<R8>, <R16>, <R0><rotation4>"},

  // Parallel addition and subtraction
  {"11111010 1 001 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "UADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHADD16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "UASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHASX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SSAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QSAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHSAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "USAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQSAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 110 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHSAX<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SSUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QSUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHSUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "USUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQSUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHSUB16<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "UADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 000 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHADD8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SSUB8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "QSUB8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SHSUB8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0100 mmmm", 7, KIND_PLAIN, "USUB8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0101 mmmm", 7, KIND_PLAIN, "UQSUB8<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 0110 mmmm", 7, KIND_PLAIN, "UHSUB8<c>\t<R8>, <R16>, <R0>"},

  // Saturating arithmetic and miscellaneous
  {"11111010 1 000 nnnn 1111 dddd 1000 mmmm", 7, KIND_PLAIN, "QADD<c>\t<R8>, <R0>, <R16>"},
  {"11111010 1 000 nnnn 1111 dddd 1001 mmmm", 7, KIND_PLAIN, "QDADD<c>\t<R8>, <R0>, <R16>"},
  {"11111010 1 000 nnnn 1111 dddd 1010 mmmm", 7, KIND_PLAIN, "QSUB<c>\t<R8>, <R0>, <R16>"},
  {"11111010 1 000 nnnn 1111 dddd 1011 mmmm", 7, KIND_PLAIN, "QDSUB<c>\t<R8>, <R0>, <R16>"},
  {"11111010 1 001 nnnn 1111 dddd 1000 mmmm", 7, KIND_PLAIN, "REV<c>.W\t<R8>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 1001 mmmm", 7, KIND_PLAIN, "REV16<c>.W\t<R8>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 1010 mmmm", 7, KIND_PLAIN, "RBIT<c>\t<R8>, <R0>"},
  {"11111010 1 001 nnnn 1111 dddd 1011 mmmm", 7, KIND_PLAIN, "REVSH<c>.W\t<R8>, <R0>"},
  {"11111010 1 010 nnnn 1111 dddd 1000 mmmm", 7, KIND_PLAIN, "SEL<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 011 nnnn 1111 dddd 1000 mmmm", 7, KIND_PLAIN, "CLZ<c>\t<R8>, <R0>"},

  // Cyclic redundancy check
  {"11111010 1 100 nnnn 1111 dddd 1000 mmmm", NotOnM(8), KIND_PLAIN, "CRC32B<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 1001 mmmm", NotOnM(8), KIND_PLAIN, "CRC32H<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 100 nnnn 1111 dddd 1010 mmmm", NotOnM(8), KIND_PLAIN, "CRC32W<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 1000 mmmm", NotOnM(8), KIND_PLAIN, "CRC32CB<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 1001 mmmm", NotOnM(8), KIND_PLAIN, "CRC32CH<c>\t<R8>, <R16>, <R0>"},
  {"11111010 1 101 nnnn 1111 dddd 1010 mmmm", NotOnM(8), KIND_PLAIN, "CRC32CW<c>\t<R8>, <R16>, <R0>"},

  // Multiply
  {"11111011 0 000 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "MUL<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 000 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "MLA<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 000 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "MLS<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 001 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SMULBB<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 001 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMLABB<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 001 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "SMULBT<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 001 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMLABT<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 001 nnnn 1111 dddd 0010 mmmm", 7, KIND_PLAIN, "SMULTB<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 001 nnnn aaaa dddd 0010 mmmm", 7, KIND_PLAIN, "SMLATB<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 001 nnnn 1111 dddd 0011 mmmm", 7, KIND_PLAIN, "SMULTT<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 001 nnnn aaaa dddd 0011 mmmm", 7, KIND_PLAIN, "SMLATT<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 010 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SMUAD<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 010 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMLAD<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 010 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "SMUADX<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 010 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMLADX<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 011 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SMULWB<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 011 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMLAWB<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 011 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "SMULWT<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 011 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMLAWT<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 100 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SMUSD<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 100 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMLSD<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 100 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "SMUSDX<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 100 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMLSDX<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 101 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "SMMUL<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 101 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMMLA<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 101 nnnn 1111 dddd 0001 mmmm", 7, KIND_PLAIN, "SMMULR<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 101 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMMLAR<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 110 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "SMMLS<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 110 nnnn aaaa dddd 0001 mmmm", 7, KIND_PLAIN, "SMMLSR<c>\t<R8>, <R16>, <R0>, <R12>"},
  {"11111011 0 111 nnnn 1111 dddd 0000 mmmm", 7, KIND_PLAIN, "USAD8<c>\t<R8>, <R16>, <R0>"},
  {"11111011 0 111 nnnn aaaa dddd 0000 mmmm", 7, KIND_PLAIN, "USADA8<c>\t<R8>, <R16>, <R0>, <R12>"},

  // Long multiply and divide
  {"11111011 1 000 nnnn llll hhhh 0000 mmmm", 7, KIND_PLAIN, "SMULL<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 001 nnnn 1111 dddd 1111 mmmm", 7, KIND_PLAIN, "SDIV<c>\t<R8>, <R16>, <R0>"},
  {"11111011 1 010 nnnn llll hhhh 0000 mmmm", 7, KIND_PLAIN, "UMULL<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 011 nnnn 1111 dddd 1111 mmmm", 7, KIND_PLAIN, "UDIV<c>\t<R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 0000 mmmm", 7, KIND_PLAIN, "SMLAL<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1000 mmmm", 7, KIND_PLAIN, "SMLALBB<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1001 mmmm", 7, KIND_PLAIN, "SMLALBT<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1010 mmmm", 7, KIND_PLAIN, "SMLALTB<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1011 mmmm", 7, KIND_PLAIN, "SMLALTT<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1100 mmmm", 7, KIND_PLAIN, "SMLALD<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 100 nnnn llll hhhh 1101 mmmm", 7, KIND_PLAIN, "SMLALDX<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 101 nnnn llll hhhh 1100 mmmm", 7, KIND_PLAIN, "SMLSLD<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 101 nnnn llll hhhh 1101 mmmm", 7, KIND_PLAIN, "SMLSLDX<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 110 nnnn llll hhhh 0000 mmmm", 7, KIND_PLAIN, "UMLAL<c>\t<R12>, <R8>, <R16>, <R0>"},
  {"11111011 1 110 nnnn llll hhhh 0110 mmmm", 7, KIND_PLAIN, "UMAAL<c>\t<R12>, <R8>, <R16>, <R0>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> Thumb32DspRows() {
  return aRow;
}
