@ Runs many short sequences of instructions, each from registers that the table gives, and keeps the registers after each
@ with a checksum of the memory. The table stands at TABLE: the features, then for each sequence the address of its
@ registers and the address of its code; zero ends it. The code begins by loading R0 to R12 through R2 and ends with a
@ branch to finish. At the end the results are written to a file through semihosting; whoever runs this without takes
@ the first BKPT for the end.
  .syntax unified
  .cpu cortex-m7
  .fpu fpv5-d16
  .thumb
  .include "results.macros"

  .equ RAM, 0x20000000
  .equ RAM_SIZE, 0x4000
  .equ NEXT, 0x20008000         @ the next table entry
  .equ RESULT_PTR, 0x20008004   @ where the next result goes
  .equ RESULTS, 0x20010000
  .equ RAM_IMAGE, 0x1000        @ the contents of RAM at the start
  .equ TABLE, 0x5000
  .equ CPACR, 0xE000ED88
  .equ HAS_FPU, 1
  .equ HAS_DSP, 2

  .word 0x20009000
  .word start + 1
  .rept 14
  .word fault + 1
  .endr

fault:
  b fault

start:
  ldr r0, =RAM
  ldr r1, =RAM_IMAGE
  ldr r2, =RAM_SIZE
1: subs r2, #4
  ldr r3, [r1, r2]
  str r3, [r0, r2]
  bne 1b
  ldr r0, =NEXT
  ldr r1, =TABLE + 4
  str r1, [r0]
  ldr r1, =RESULTS
  str r1, [r0, #4]
  ldr r4, =TABLE
  ldr r4, [r4]
  tst r4, #HAS_FPU
  beq next
  ldr r0, =CPACR
  ldr r1, =0x00F00000
  str r1, [r0]
  dsb
  isb

next:
  ldr r4, =TABLE
  ldr r4, [r4]
  ldr r0, =NEXT
  ldr r1, [r0]
  ldr r2, [r1], #4
  cmp r2, #0
  beq end
  ldr r3, [r1], #4
  str r1, [r0]
  tst r4, #HAS_FPU
  beq 1f
  vldmia r2!, {s0-s31}
  ldr r5, [r2], #4
  vmsr fpscr, r5
1: ldr r5, [r2], #4
  tst r4, #HAS_DSP
  ldr sp, [r2], #4
  ldr lr, [r2], #4
  ite ne
  msrne apsr_nzcvqg, r5
  msreq apsr_nzcvq, r5
  bx r3

finish:
  push {r0-r12, lr}
  mrs r0, apsr
  ldr r1, =RESULT_PTR
  ldr r2, [r1]
  str r0, [r2], #4
  mov r0, sp
  str r0, [r2], #4
  movs r3, #14
1: ldr r4, [r0], #4
  str r4, [r2], #4
  subs r3, #1
  bne 1b
  ldr r4, =TABLE
  ldr r4, [r4]
  tst r4, #HAS_FPU
  beq 2f
  vmrs r0, fpscr
  str r0, [r2], #4
  vstmia r2!, {s0-s31}
2: ldr r3, =RAM
  ldr r4, =RAM_SIZE
  movs r0, #0
3: ldr r5, [r3], #4
  eors r0, r5
  ror r0, r0, #3
  subs r4, #4
  bne 3b
  str r0, [r2], #4
  str r2, [r1]
  b next

end:
  WRITE_RESULTS RESULT_PTR, RAM
  .ltorg
