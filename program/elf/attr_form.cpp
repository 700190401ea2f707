#include "program/elf/attr_form.h"

namespace {

constexpr U32 MAX_FIXED_SIZE = 16;  // bytes

}  // namespace

I32 FixedFormSize(U32 Form, const FORM_SIZES& Sizes) {
  switch (Form) {
    case DW_FORM_flag_present:
    case DW_FORM_implicit_const:
      return 0;
    case DW_FORM_data1:
    case DW_FORM_flag:
    case DW_FORM_ref1:
    case DW_FORM_strx1:
    case DW_FORM_addrx1:
      return 1;
    case DW_FORM_data2:
    case DW_FORM_ref2:
    case DW_FORM_strx2:
    case DW_FORM_addrx2:
      return 2;
    case DW_FORM_strx3:
    case DW_FORM_addrx3:
      return 3;
    case DW_FORM_data4:
    case DW_FORM_ref4:
    case DW_FORM_ref_sup4:
    case DW_FORM_strx4:
    case DW_FORM_addrx4:
      return 4;
    case DW_FORM_data8:
    case DW_FORM_ref8:
    case DW_FORM_ref_sig8:
    case DW_FORM_ref_sup8:
      return 8;
    case DW_FORM_data16:
      return 16;
    case DW_FORM_addr:
      return Sizes.Addr;
    case DW_FORM_ref_addr:
      return Sizes.RefAddr;
    case DW_FORM_strp:
    case DW_FORM_line_strp:
    case DW_FORM_sec_offset:
    case DW_FORM_strp_sup:
    case DW_FORM_GNU_ref_alt:
    case DW_FORM_GNU_strp_alt:
      return Sizes.Offset;
    default:
      return FORM_SIZE_VARIES;
  }
}

// Zeros are a value of every form but the indirect one, which names another.
bool IsKnownForm(U32 Form) {
  static const U8 aZeros[MAX_FIXED_SIZE] = {};
  CByteCursor Bytes(aZeros, sizeof(aZeros), false);
  if (Form != DW_FORM_indirect) SkipForm(Bytes, Form, FORM_SIZES());
  return Bytes.Ok();
}

U32 DirectForm(CByteCursor& Bytes, U32 Form) {
  if (Form != DW_FORM_indirect) return Form;
  const U64 Direct = Bytes.Leb();
  // An indirect one again would let a damaged file nest them, and a constant in the abbreviation has no place here.
  const bool bGood = Direct != DW_FORM_indirect && Direct != DW_FORM_implicit_const;
  if (!bGood || Direct > 0xFFFF) Bytes.Spoil();
  return static_cast<U32>(Direct);
}

void SkipForm(CByteCursor& Bytes, U32 Form, const FORM_SIZES& Sizes) {
  const U32 Direct = DirectForm(Bytes, Form);
  const I32 Size = FixedFormSize(Direct, Sizes);
  if (Size != FORM_SIZE_VARIES) return Bytes.Skip(static_cast<U64>(Size));
  switch (Direct) {
    case DW_FORM_block1:
      return Bytes.Skip(Bytes.Int<U8>());
    case DW_FORM_block2:
      return Bytes.Skip(Bytes.Int<U16>());
    case DW_FORM_block4:
      return Bytes.Skip(Bytes.Int<U32>());
    case DW_FORM_block:
    case DW_FORM_exprloc:
      return Bytes.Skip(Bytes.Leb());
    case DW_FORM_string:
      Bytes.Text();
      return;
    case DW_FORM_sdata:
    case DW_FORM_udata:
    case DW_FORM_ref_udata:
    case DW_FORM_strx:
    case DW_FORM_addrx:
    case DW_FORM_loclistx:
    case DW_FORM_rnglistx:
    case DW_FORM_GNU_addr_index:
    case DW_FORM_GNU_str_index:
      Bytes.Leb();
      return;
    default:
      Bytes.Spoil();
  }
}
