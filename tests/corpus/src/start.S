@ The reset handler, with data between its instructions and a frame that it describes itself.
  .syntax unified
  .text
  .cfi_sections .debug_frame
  .globl start
  .type start, %function
#ifdef __thumb__
  .thumb_func
#endif
start:
  .cfi_startproc
  push {r4, lr}
  .cfi_adjust_cfa_offset 8
  .cfi_rel_offset r4, 0
  .cfi_rel_offset lr, 4
  bl main
  ldr r4, magic
  pop {r4, pc}
  .cfi_endproc
  .align 2
magic:
  .word 0x12345678
  .size start, . - start
