@ What exceptions do with floating point context. Thread mode runs on MSP with FP access unless a case says otherwise. The
@ frame of the first exception is then at FRAME; its words for S0 and FPSCR hold MARK until they are written.
  .syntax unified
  .cpu cortex-m4
  .fpu fpv4-sp-d16
  .thumb
  .include "harness.macros"

  .equ FRAME, 0x20001000 - 0x68
  .equ MARK, 0x5A5A5A5A

  .macro BEGIN
  PUT CPACR, 0x00F00000
  PUT FRAME + 0x20, MARK
  PUT FRAME + 0x60, MARK
  vmov.f32 s0, #1.0
  .endm

  .macro KEEP index, address
  ldr r0, =\address
  ldr r0, [r0]
  ldr r1, =RESULT + 4 * \index
  str r0, [r1]
  .endm

  .macro KEEP_S0 index
  ldr r0, =RESULT + 4 * \index
  vstr s0, [r0]
  .endm

lazy_unused:                    @ a handler without FP instructions saves nothing
  HOOK 11, 1f
  BEGIN
  svc 0
  KEEP_S0 3
  bx lr
1: KEEP 0, FPCCR
  KEEP 1, FPCAR
  KEEP 2, FRAME + 0x20
  bx lr

lazy_saved:                     @ its first FP instruction does
  HOOK 11, 1f
  BEGIN
  vmrs r0, fpscr
  orr r0, r0, #0x80000000
  vmsr fpscr, r0
  svc 0
  KEEP_S0 3
  bx lr
1: vmov.f32 s0, #2.0
  KEEP 0, FPCCR
  KEEP 1, FRAME + 0x20
  KEEP 2, FRAME + 0x60
  bx lr

eager:
  HOOK 11, 1f
  BEGIN
  PUT FPCCR, 0x80000000
  svc 0
  KEEP_S0 3
  bx lr
1: KEEP 0, FPCCR
  KEEP 1, FRAME + 0x20
  ldr r0, [sp, #4]
  ldr r1, =RESULT + 8
  str r0, [r1]                  @ EXC_RETURN
  vmov.f32 s0, #2.0
  bx lr

no_automatic_context:           @ ASPEN is clear: FP registers are nobody's
  HOOK 11, 1f
  PUT CPACR, 0x00F00000
  PUT FPCCR, 0
  vmov.f32 s0, #1.0
  svc 0
  KEEP_S0 1
  mrs r0, control
  ldr r1, =RESULT + 8
  str r0, [r1]
  bx lr
1: vmov.f32 s0, #2.0
  b save_lr

nested:                         @ the inner handler saves for the thread, the outer one never uses the FPU
  HOOK 16, 1f
  HOOK 17, 2f
  BEGIN
  PUTB IPR, 0x80
  PUTB IPR + 1, 0x40
  PUT ISPR, 1
  isb
  KEEP_S0 3
  bx lr
1: PUT ISPR, 2
  isb
  KEEP 2, FPCCR
  b save_lr
2: vmov.f32 s0, #2.0
  KEEP 1, FRAME + 0x20
  bx lr

nested_contexts:                @ both handlers have a context of their own
  HOOK 16, 1f
  HOOK 17, 2f
  BEGIN
  PUTB IPR, 0x80
  PUTB IPR + 1, 0x40
  PUT ISPR, 1
  isb
  KEEP_S0 3
  bx lr
1: vmov.f32 s0, #2.0
  PUT ISPR, 2
  isb
  KEEP_S0 2
  bx lr
2: vmov.f32 s0, #3.0
  KEEP 1, FRAME + 0x20
  b save_lr

tail_chained:                   @ the second handler begins a context anew
  HOOK 16, 1f
  HOOK 17, 2f
  BEGIN
  PUT ISPR, 1
  isb
  KEEP_S0 3
  bx lr
1: vmov.f32 s0, #2.0
  PUT ISPR, 2
  bx lr
2: mrs r0, control
  ldr r1, =RESULT + 4
  str r0, [r1]
  vmov.f32 s0, #3.0
  b save_lr

on_psp:
  HOOK 11, save_lr
  BEGIN
  ldr r0, =0x20000F04           @ not aligned to 8: a word is left out
  msr psp, r0
  movs r0, #6
  msr control, r0
  isb
  svc 0
  ldr r0, =RESULT + 4
  str sp, [r0]
  mrs r1, control
  str r1, [r0, #4]
  KEEP 3, FPCAR
  movs r0, #4
  msr control, r0
  isb
  bx lr

default_modes:                  @ a new context takes them, flags stay what they are
  HOOK 11, 1f
  BEGIN
  PUT FPDSCR, 0xFFFFFFFF
  ldr r0, =0x40000001
  vmsr fpscr, r0
  svc 0
  vmrs r0, fpscr
  ldr r1, =RESULT + 4
  str r0, [r1]
  bx lr
1: vmrs r0, fpscr
  ldr r1, =RESULT
  str r0, [r1]
  bx lr

no_access:
  HOOK 6, skip4
  vmov.f32 s0, #1.0
  bx lr

no_access_unprivileged:
  HOOK 6, skip_extended
  HOOK 11, 1f
  PUT CPACR, 0x00500000         @ privileged access only
  vmov.f32 s0, #1.0
  movs r0, #5
  msr control, r0
  isb
  vmov.f32 s0, #2.0
  svc 0
  KEEP_S0 0
  bx lr
1: movs r0, #4
  msr control, r0
  bx lr
skip_extended:
  b skip4

unknown_instruction:            @ double precision
  HOOK 6, skip4
  BEGIN
  .inst.w 0xEE300B00
  bx lr

unknown_without_access:
  HOOK 6, skip4
  .inst.w 0xEE300B00
  bx lr

save_fails:
  HOOK 11, 1f
  HOOK 5, 2f
  PUT SHPR2, 0x80000000
  BEGIN
  svc 0
  KEEP_S0 3
  bx lr
1: PUT FPCAR, 0x30000000
  vmov.f32 s0, #2.0
  bx lr
2: KEEP 0, FPCCR
  PUT FPCAR, FRAME + 0x20
  bx lr

save_fails_not_ready:           @ the bus fault could not have preempted what was interrupted
  HOOK 11, 1f
  HOOK 3, 2f
  PUT SHCSR, 0
  BEGIN
  svc 0
  KEEP_S0 3
  bx lr
1: PUT FPCAR, 0x30000000
  vmov.f32 s0, #2.0
  bx lr
2: KEEP 0, FPCCR
  PUT FPCAR, FRAME + 0x20
  bx lr

restore_refused:                @ access is taken away between saving and restoring
  HOOK 11, 1f
  HOOK 6, 2f
  BEGIN
  svc 0
  KEEP_S0 3
  bx lr
1: vmov.f32 s0, #2.0
  PUT CPACR, 0
  bx lr
2: PUT CPACR, 0x00F00000
  bx lr

eager_refused:                  @ access is taken away while there is a context to save
  HOOK 11, 1f
  HOOK 6, 1f
  PUT SHPR2, 0x80000000
  BEGIN
  PUT FPCCR, 0x80000000
  PUT CPACR, 0
  svc 0
  bx lr
1: PUT CPACR, 0x00F00000
  bx lr

unaligned:
  HOOK 6, skip_extended
  BEGIN
  ldr r0, =0x20000802
  vldr s0, [r0]
  bx lr

bus_read:                       @ nothing is loaded, the base keeps its value
  HOOK 5, skip_extended
  BEGIN
  ldr r0, =0x60000000
  vldmia r0!, {s0-s3}
  ldr r1, =RESULT
  str r0, [r1]
  KEEP_S0 1
  bx lr

  .ltorg
