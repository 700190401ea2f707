// ARM encodings: multiply, multiply of halfwords, saturating arithmetic, count of leading zeros.

#include "core/decoder/inst_row.h"

// clang-format off
namespace {

constexpr INST_ROW aRow[] = {
  // Multiply
  {"cccc 0000 000 s dddd 0000 mmmm 1001 nnnn", 4, KIND_PLAIN, "MUL<s><c>\t<R16>, <R0>, <R8>"},
  {"cccc 0000 001 s dddd aaaa mmmm 1001 nnnn", 4, KIND_PLAIN, "MLA<s><c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0000 010 0 hhhh llll mmmm 1001 nnnn", 6, KIND_PLAIN, "UMAAL<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0000 011 0 dddd aaaa mmmm 1001 nnnn", 7, KIND_PLAIN, "MLS<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0000 100 s hhhh llll mmmm 1001 nnnn", 4, KIND_PLAIN, "UMULL<s><c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0000 101 s hhhh llll mmmm 1001 nnnn", 4, KIND_PLAIN, "UMLAL<s><c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0000 110 s hhhh llll mmmm 1001 nnnn", 4, KIND_PLAIN, "SMULL<s><c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0000 111 s hhhh llll mmmm 1001 nnnn", 4, KIND_PLAIN, "SMLAL<s><c>\t<R12>, <R16>, <R0>, <R8>"},

  // Multiply of halfwords
  {"cccc 0001 0000 dddd aaaa mmmm 1000 nnnn", 5, KIND_PLAIN, "SMLABB<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0000 dddd aaaa mmmm 1010 nnnn", 5, KIND_PLAIN, "SMLATB<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0000 dddd aaaa mmmm 1100 nnnn", 5, KIND_PLAIN, "SMLABT<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0000 dddd aaaa mmmm 1110 nnnn", 5, KIND_PLAIN, "SMLATT<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0010 dddd aaaa mmmm 1000 nnnn", 5, KIND_PLAIN, "SMLAWB<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0010 dddd aaaa mmmm 1100 nnnn", 5, KIND_PLAIN, "SMLAWT<c>\t<R16>, <R0>, <R8>, <R12>"},
  {"cccc 0001 0010 dddd xxxx mmmm 1010 nnnn", 5, KIND_PLAIN, "SMULWB<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0001 0010 dddd xxxx mmmm 1110 nnnn", 5, KIND_PLAIN, "SMULWT<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0001 0100 hhhh llll mmmm 1000 nnnn", 5, KIND_PLAIN, "SMLALBB<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0001 0100 hhhh llll mmmm 1010 nnnn", 5, KIND_PLAIN, "SMLALTB<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0001 0100 hhhh llll mmmm 1100 nnnn", 5, KIND_PLAIN, "SMLALBT<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0001 0100 hhhh llll mmmm 1110 nnnn", 5, KIND_PLAIN, "SMLALTT<c>\t<R12>, <R16>, <R0>, <R8>"},
  {"cccc 0001 0110 dddd xxxx mmmm 1000 nnnn", 5, KIND_PLAIN, "SMULBB<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0001 0110 dddd xxxx mmmm 1010 nnnn", 5, KIND_PLAIN, "SMULTB<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0001 0110 dddd xxxx mmmm 1100 nnnn", 5, KIND_PLAIN, "SMULBT<c>\t<R16>, <R0>, <R8>"},
  {"cccc 0001 0110 dddd xxxx mmmm 1110 nnnn", 5, KIND_PLAIN, "SMULTT<c>\t<R16>, <R0>, <R8>"},

  // Saturating addition and subtraction
  {"cccc 0001 0000 nnnn dddd 0000 0101 mmmm", 5, KIND_PLAIN, "QADD<c>\t<R12>, <R0>, <R16>"},
  {"cccc 0001 0010 nnnn dddd 0000 0101 mmmm", 5, KIND_PLAIN, "QSUB<c>\t<R12>, <R0>, <R16>"},
  {"cccc 0001 0100 nnnn dddd 0000 0101 mmmm", 5, KIND_PLAIN, "QDADD<c>\t<R12>, <R0>, <R16>"},
  {"cccc 0001 0110 nnnn dddd 0000 0101 mmmm", 5, KIND_PLAIN, "QDSUB<c>\t<R12>, <R0>, <R16>"},

  {"cccc 0001 0110 1111 dddd 1111 0001 mmmm", 5, KIND_PLAIN, "CLZ<c>\t<R12>, <R0>"},

  // Cyclic redundancy check
  {"cccc 0001 0000 nnnn dddd 0000 0100 mmmm", 8, KIND_PLAIN, "CRC32B<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0001 0010 nnnn dddd 0000 0100 mmmm", 8, KIND_PLAIN, "CRC32H<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0001 0100 nnnn dddd 0000 0100 mmmm", 8, KIND_PLAIN, "CRC32W<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0001 0000 nnnn dddd 0010 0100 mmmm", 8, KIND_PLAIN, "CRC32CB<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0001 0010 nnnn dddd 0010 0100 mmmm", 8, KIND_PLAIN, "CRC32CH<c>\t<R12>, <R16>, <R0>"},
  {"cccc 0001 0100 nnnn dddd 0010 0100 mmmm", 8, KIND_PLAIN, "CRC32CW<c>\t<R12>, <R16>, <R0>"},
};

}  // namespace
// clang-format on

std::span<const INST_ROW> ArmMultiplyRows() {
  return aRow;
}
