@ A program as other compilers describe theirs: source paths with drives and backslashes, attributes whose form stands with
@ the value, and frames that are counted in words. One function in ARM code, one in Thumb code with data behind it.
  .syntax unified
  .arch armv7-a
  .file 1 "C:\\Work\\src\\a.c"
  .file 2 "inc\\b.h"
  .cfi_sections .debug_frame

  .text
  .global Start
  .type Start, %function
  .arm
Start:
  .cfi_startproc
  .loc 1 3
  push {r4, lr}
  .cfi_def_cfa_offset 2
  .loc 1 4
  bl Scaled
  .loc 1 5
  pop {r4, pc}
  .cfi_endproc
.LStartEnd:
  .size Start, . - Start

  .global Scaled
  .type Scaled, %function
  .thumb
  .thumb_func
Scaled:
  .loc 2 7
  ldr r0, Factor
  .loc 2 8
  bx lr
.LScaledEnd:
  .align 2
Factor:
  .word 0x12345678
  .size Scaled, .LScaledEnd - Scaled
.LTextEnd:

  .data
  .type Level, %object
Level:
  .word 5
  .size Level, 4

  .section .note.iar, "", %progbits
  .word 0

  .section .debug_line
.LLines:

#define END .byte 0, 0
#define INDIRECT 0x16
#define AT_name 0x03
#define FORM_addr 0x01
#define FORM_data2 0x05
#define FORM_data4 0x06
#define FORM_string 0x08
#define FORM_data1 0x0b
#define FORM_udata 0x0f
#define FORM_ref4 0x13
#define FORM_sec_offset 0x17
#define FORM_exprloc 0x18

  .section .debug_abbrev
.LAbbrevs:
  .uleb128 1, 0x11  @ compile unit
  .byte 1
  .byte AT_name, INDIRECT, 0x1b /* comp_dir */, INDIRECT, 0x13 /* language */, INDIRECT, 0x10 /* stmt_list */, INDIRECT
  .byte 0x11 /* low_pc */, INDIRECT, 0x12 /* high_pc */, INDIRECT
  END
  .uleb128 2, 0x2e  @ subprogram
  .byte 0
  .byte AT_name, INDIRECT, 0x3f /* external */, 0x19 /* flag_present */, 0x3a /* decl_file */, INDIRECT
  .byte 0x3b /* decl_line */, INDIRECT, 0x11, INDIRECT, 0x12, INDIRECT
  END
  .uleb128 3, 0x24  @ base type
  .byte 0
  .byte AT_name, INDIRECT, 0x3e /* encoding */, INDIRECT, 0x0b /* byte_size */, INDIRECT
  END
  .uleb128 4, 0x34  @ variable
  .byte 0
  .byte AT_name, INDIRECT, 0x49 /* type */, INDIRECT, 0x3a, INDIRECT, 0x3b, INDIRECT, 0x02 /* location */, INDIRECT
  END
  .byte 0

  .section .debug_info
.LUnit:
  .word .LUnitEnd - .LVersion
.LVersion:
  .2byte 4
  .word .LAbbrevs
  .byte 4
  .uleb128 1
  .byte FORM_string
  .asciz "src\\a.c"
  .byte FORM_string
  .asciz "C:\\Work"
  .byte FORM_data2
  .2byte 0x0c  @ C99
  .byte FORM_sec_offset
  .word .LLines
  .byte FORM_addr
  .word Start
  .byte FORM_data4
  .word .LTextEnd - Start

  .uleb128 2
  .byte FORM_string
  .asciz "Start"
  .byte FORM_data1, 1, FORM_udata, 3, FORM_addr
  .word Start
  .byte FORM_data4
  .word .LStartEnd - Start

  .uleb128 2
  .byte FORM_string
  .asciz "Scaled"
  .byte FORM_data1, 2, FORM_udata, 7, FORM_addr
  .word Scaled
  .byte FORM_data4
  .word .LScaledEnd - Scaled

.LInt:
  .uleb128 3
  .byte FORM_string
  .asciz "int"
  .byte FORM_data1, 5, FORM_udata, 4

  .uleb128 4
  .byte FORM_string
  .asciz "Level"
  .byte FORM_ref4
  .word .LInt - .LUnit
  .byte FORM_data1, 1, FORM_udata, 1, FORM_exprloc, 5, 3 /* DW_OP_addr */
  .word Level

  .byte 0
.LUnitEnd:
