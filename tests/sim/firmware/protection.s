@ Many accesses under memory protection. The table stands at TABLE: a flag for the FPU, then records of RECORD_SIZE bytes;
@ kind -1 ends it. Each access leaves RESULT_WORDS words at RESULTS, which are written to a file through semihosting at the
@ end; whoever runs this without takes the first BKPT for the end. Regions 0 and 1 hold this program and its data, 2 to 5
@ are the case's own within WINDOW.
  .syntax unified
  .cpu cortex-m4
  .fpu fpv4-sp-d16
  .thumb
  .include "results.macros"

  .equ CUR, 0x20000000          @ the present record
  .equ RES, 0x20000004          @ where its results go
  .equ ENTERED, 0x20000008      @ numbers of the exceptions, a byte each
  .equ DONE, 0x2000000C         @ the case is over
  .equ PARAMS, 0x20000010       @ of semihosting
  .equ RESULTS, 0x20010000
  .equ STACK, 0x2000F000
  .equ WINDOW, 0x20100000
  .equ WINDOW_SIZE, 0x10000
  .equ TABLE, 0x5000
  .equ MPU, 0xE000ED94          @ CTRL, RNR, RBAR, RASR
  .equ SHPR2, 0xE000ED1C
  .equ SHCSR, 0xE000ED24        @ then CFSR, HFSR, DFSR, MMFAR
  .equ CPACR, 0xE000ED88
  .equ FPCCR, 0xE000EF34
  .equ USER, 1
  .equ MASKED, 2                @ by FAULTMASK
  .equ FAULT_DISABLED, 4
  .equ FP, 8                    @ there is context, and the handler of SVC has it saved
  @ Offsets in a record.
  .equ KIND, 0
  .equ ADDR, 4
  .equ CTRL, 8
  .equ FLAGS, 12
  .equ HANDLER_RASR, 16         @ what the handler of SVC makes of region 5; 0: nothing
  .equ REGIONS, 20              @ RBAR and RASR of four
  .equ RECORD_SIZE, 52

  .word STACK
  .word start + 1
  .rept 9
  .word fault + 1
  .endr
  .word svcall + 1
  .rept 4
  .word fault + 1
  .endr

log_entry:
  ldr r0, =ENTERED
  ldr r1, [r0]
  mrs r2, ipsr
  orr r1, r2, r1, lsl #8
  str r1, [r0]
  bx lr

svcall:
  ldr r0, =DONE
  ldr r0, [r0]
  cbz r0, 1f
  msr control, r0               @ privileged again
  bx lr
1: push {r4, lr}
  bl log_entry
  ldr r4, =CUR
  ldr r4, [r4]
  ldr r1, [r4, #HANDLER_RASR]
  cbz r1, 2f
  ldr r0, =MPU
  movs r2, #5
  str r2, [r0, #4]
  str r1, [r0, #12]
  dsb
  isb
2: ldr r0, [r4, #FLAGS]
  tst r0, #FP
  beq 3f
  vmov.f32 s1, s1
3: pop {r4, pc}

fault:                          @ never goes back to where it came from
  bl log_entry
  ldr r0, =MPU
  movs r1, #0
  str r1, [r0]
  ldr r0, =SHCSR
  ldr r2, [r0]
  bic r2, r2, #0x80             @ SVC may have been interrupted
  str r2, [r0]
  ldr r0, =FPCCR
  mov r2, #0xC0000000
  str r2, [r0]
  msr control, r1
  isb
  ldr r0, =STACK - 32
  msr msp, r0
  ldr r2, =recover + 1
  str r2, [r0, #24]
  ldr r2, =0x01000000
  str r2, [r0, #28]
  ldr lr, =0xFFFFFFF9
  bx lr

start:
  ldr r0, =CUR
  ldr r1, =TABLE + 4
  str r1, [r0]
  ldr r1, =RESULTS
  str r1, [r0, #RES - CUR]
  ldr r0, =SHPR2
  mov r1, #0x80000000           @ SVC is less urgent than faults
  str r1, [r0]
  ldr r0, =WINDOW               @ nop.w; bx lr; again
  ldr r1, =WINDOW + WINDOW_SIZE
  ldr r2, =0x8000F3AF
  ldr r3, =0xF3AF4770
  ldr r4, =0x47708000
1: stm r0!, {r2, r3, r4}
  cmp r0, r1
  blo 1b
  ldr r0, =MPU
  adr r1, own_regions
  ldm r1, {r2-r5}
  str r2, [r0, #8]
  str r3, [r0, #12]
  str r4, [r0, #8]
  str r5, [r0, #12]
  ldr r0, =TABLE
  ldr r0, [r0]
  cbz r0, next
  ldr r0, =CPACR
  mov r1, #0x00F00000
  str r1, [r0]
  dsb
  isb

next:
  ldr r11, =CUR
  ldr r11, [r11]
  ldr r10, [r11, #KIND]
  cmp r10, #0
  blt end
  movs r0, #0
  mvn r1, r0
  ldr r2, =ENTERED
  str r0, [r2]
  str r0, [r2, #DONE - ENTERED]
  ldr r9, [r11, #FLAGS]
  ldr r2, =SHCSR
  str r1, [r2, #4]
  str r1, [r2, #8]
  tst r9, #FAULT_DISABLED
  it eq
  moveq r0, #0x10000
  str r0, [r2]
  ldr r2, =MPU
  add r3, r11, #REGIONS
  movs r4, #4
1: ldm r3!, {r0, r1}
  str r0, [r2, #8]
  str r1, [r2, #12]
  subs r4, #1
  bne 1b
  and r0, r10, #3               @ one of them is read back
  adds r0, #2
  str r0, [r2, #4]
  ldr r7, [r2, #8]
  ldr r8, [r2, #12]
  ldr r0, [r11, #ADDR]
  bic r1, r0, #3
  ldr r6, [r1]
  ldr r1, [r11, #CTRL]
  str r1, [r2]
  dsb
  isb
  tst r9, #MASKED
  beq 1f
  cpsid f
1: and r1, r9, #USER
  cmp r10, #6
  bne 1f
  msr psp, r0
  orr r1, r1, #2
1: msr control, r1
  isb
  tst r9, #FP
  beq 1f
  vmov.f32 s0, s0
1: tbb [pc, r10]
kinds:
  .byte (load - kinds) / 2, (store - kinds) / 2, (byte - kinds) / 2, (load_user - kinds) / 2
  .byte (store_user - kinds) / 2, (fetch - kinds) / 2, (call - kinds) / 2, 0
load:
  ldr r6, [r0]
  b done
store:
  str r6, [r0]
  b done
byte:
  ldrb r6, [r0]
  b done
load_user:
  ldrt r6, [r0]
  b done
store_user:
  strt r6, [r0]
  b done
fetch:
  adds r0, #1
  blx r0
  b done
call:
  svc 0
done:
  cpsie f
  ldr r0, =DONE
  movs r1, #2
  str r1, [r0]
  ldr r0, =STACK - 0x400
  mov sp, r0
  svc 0
recover:
  movs r0, #0
  msr control, r0
  isb
  ldr sp, =STACK
  ldr r2, =MPU
  str r0, [r2]
  dsb
  isb
  ldr r2, =SHCSR
  ldr r4, [r2, #4]
  ldr r5, [r2, #8]
  tst r4, #0x80                 @ its address is valid
  it ne
  ldrne r0, [r2, #16]
  ldr r1, =ENTERED
  ldr r3, [r1]
  ldr r1, =RES
  ldr r2, [r1]
  stm r2!, {r0, r3, r4, r5, r6, r7, r8}
  str r2, [r1]
  add r11, r11, #RECORD_SIZE
  ldr r1, =CUR
  str r11, [r1]
  b next

end:
  WRITE_RESULTS RES, PARAMS
  .align 2
own_regions:                    @ 1 MB to read and execute, 128 KB for everything
  .word 0x00000010, 0x06000027
  .word 0x20000011, 0x03000021
  .ltorg
