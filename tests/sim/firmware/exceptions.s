@ Exception cases. The test puts the address of the case at CASE and runs to the BKPT at done. Cases run in thread mode on MSP
@ with all configurable faults enabled unless they say otherwise.
  .syntax unified
  .cpu cortex-m4
  .thumb
  .include "harness.macros"

svc_on_psp:
  HOOK 11, 1f
  ldr r0, =0x20000F04           @ not aligned to 8: a word is left out
  msr psp, r0
  movs r0, #2
  msr control, r0
  isb
  movs r0, #7
  movs r1, #1
  cmp r1, #1
  svc 3
  ldr r2, =RESULT
  str r0, [r2]                  @ what the handler put into the frame
  mrs r0, apsr
  str r0, [r2, #4]
  mov r0, sp
  str r0, [r2, #8]
  movs r0, #0
  msr control, r0
  isb
  bx lr
1: mrs r0, psp
  movs r1, #42
  str r1, [r0]
  ldr r1, [r0, #28]
  ldr r2, =RESULT
  str r1, [r2, #12]             @ stacked xPSR
  bx lr

tail_chain:
  HOOK 16, 1f
  PUT ISPR, 1
  isb
  bx lr
1: PUT ISPR, 2
  bx lr

basepri_holds_back:
  PUTB IPR, 0x80
  PUTB IPR + 1, 0x40
  movs r0, #0x80
  msr basepri, r0
  PUT ISPR, 3
  isb
  ldr r0, =LOG_NEXT
  ldr r0, [r0]
  movs r1, #0xEE
  strb r1, [r0]
  adds r0, #1
  ldr r1, =LOG_NEXT
  str r0, [r1]
  movs r0, #0x40
  msr basepri_max, r0           @ raises
  movs r0, #0xC0
  msr basepri_max, r0           @ would lower: ignored
  mrs r0, basepri
  ldr r1, =RESULT
  str r0, [r1]
  movs r0, #0
  msr basepri, r0
  isb
  bx lr

pendsv_after_svc:
  HOOK 11, 1f
  PUT SHPR3, 0x00FF0000
  svc 0
  bx lr
1: PUT ICSR, 0x10000000
  isb
  bx lr

nmi_through_faultmask:
  cpsid f
  PUT ISPR, 1
  PUT ICSR, 0x80000000
  isb
  cpsie f
  isb
  bx lr

undefined:
  HOOK 6, skip2
  udf 0
  bx lr

undefined_disabled:
  HOOK 3, skip2
  PUT SHCSR, 0
  udf 0
  bx lr

no_coprocessor:
  HOOK 6, skip4
  .inst.w 0xEE300A00            @ vadd.f32 s0, s0, s0
  bx lr

fault_in_fault:
  HOOK 6, 1f
  HOOK 3, skip2
  udf 0
2: bx lr
1: push {lr}
  udf 0                         @ cannot preempt itself
  pop {lr}
  b skip2

lockup:
  HOOK 3, 1f
  PUT SHCSR, 0
  udf 0
1: udf 0

svc_masked:
  HOOK 3, save_lr
  cpsid i
  svc 0
  cpsie i
  bx lr

bus_read:
  HOOK 5, skip2
  ldr r0, =0x60000004
  movs r1, #5
  ldr r1, [r0]
  bx lr

bus_write_flash:                @ the store waits for the bus
  HOOK 5, skip2
  PUT ACTLR, 2
  movs r0, #0x40
  str r0, [r0]
  bx lr

bus_write_buffered:             @ the core has gone on, the base has moved
  movs r0, #0x40
  strb r1, [r0, #2]!
  ldr r1, =RESULT
  str r0, [r1]
  bx lr

bus_write_disabled:
  PUT SHCSR, 0
  movs r0, #0x40
  stm r0!, {r1, r2}
  bx lr

bus_write_back:                 @ the base keeps its value
  HOOK 5, skip4
  ldr r0, =0x60000000
  ldr r1, [r0, #4]!
  ldr r1, =RESULT
  str r0, [r1]
  bx lr

execute_never:
  HOOK 4, finish
  ldr r0, =0x40000001
  bx r0

fetch_nowhere:
  HOOK 5, finish
  ldr r0, =0x10000001
  bx r0

arm_state:
  HOOK 6, 1f
  ldr r0, =done
  bx r0
1: ldr r0, [sp, #8 + 28]
  orr r0, r0, #0x01000000
  str r0, [sp, #8 + 28]
  bx lr

bad_return:
  HOOK 6, 2f
  HOOK 16, 1f
  PUT ISPR, 1
  isb
  bx lr
1: ldr r0, =0xFFFFFFF5
  add sp, #8
  bx r0
2: ldr r0, =0xFFFFFFF9          @ repairs what the handler returns with
  str r0, [sp, #4]
  b finish

unaligned_multiple:
  HOOK 6, skip4
  ldr r0, =0x20000802
  ldmia.w r0, {r1, r2}
  bx lr

unaligned_trap:
  HOOK 6, skip2
  ldr r0, =0x20000801
  ldr r1, [r0]
  PUT CCR, 0x208
  ldr r0, =0x20000801
  ldr r1, [r0]
  bx lr

divide_by_zero:
  HOOK 6, skip4
  movs r0, #9
  movs r1, #0
  sdiv r2, r0, r1
  ldr r3, =RESULT
  str r2, [r3]
  PUT CCR, 0x210
  movs r1, #0
  udiv r2, r0, r1
  bx lr

unprivileged:
  HOOK 5, skip2
  HOOK 11, 1f
  movs r0, #1
  msr control, r0
  isb
  cpsid i                       @ ignored
  msr primask, r0               @ ignored
  ldr r0, =ICSR
  ldr r1, [r0]                  @ faults
  svc 0
  bx lr
1: mrs r0, primask
  ldr r1, =RESULT
  str r0, [r1]
  movs r0, #0
  msr control, r0
  bx lr

exclusive_lost:
  ldr r2, =0x20000800
  ldrex r0, [r2]
  strex r0, r1, [r2]            @ 0
  ldr r3, =RESULT
  str r0, [r3]
  ldrex r0, [r2]
  svc 0
  ldr r2, =0x20000800
  ldr r3, =RESULT
  strex r0, r1, [r2]            @ 1: the exception has cleared the monitor
  str r0, [r3, #4]
  bx lr

stack_lost:
  HOOK 3, 1f
  PUT ACTLR, 2
  ldr r0, =0x30000000
  msr msp, r0
  udf 0
1: b 1b

wfi_masked:
  cpsid i
  PUT ISPR, 1
  wfi
  PUT 0xE000E280, 1             @ clear pending
  cpsie i
  isb
  bx lr

wfe_events:
  sev
  wfe                           @ the event is there
  svc 0
  wfe                           @ the exception was one
  bx lr

unstack_lost:                   @ the frame is gone when the handler returns
  HOOK 11, 1f
  HOOK 5, 2f
  ldr r0, =0x20000F00
  msr psp, r0
  movs r0, #2
  msr control, r0
  isb
  svc 0
1: ldr r0, =0x30000000
  msr psp, r0
  bx lr
2: ldr r0, =0x20000EE0          @ where it was
  msr psp, r0
  ldr r1, =3f + 1
  str r1, [r0, #24]
  bx lr
  .thumb_func
3: movs r0, #0
  msr control, r0
  isb
  b done

stack_lost_derived:             @ the fault of the stacking comes before the less urgent exception
  HOOK 5, 1f
  PUT SHPR2, 0x80000000
  ldr r0, =0x30000020
  msr psp, r0
  movs r0, #2
  msr control, r0
  isb
  svc 0
1: ldr r0, =0x20000EE0
  msr psp, r0
  ldr r1, =3b + 1
  str r1, [r0, #24]
  ldr r1, =0x01000000
  str r1, [r0, #28]
  bx lr

vector_lost:                    @ the table's end lies behind the memory
  HOOK 3, 2f
  ldr r0, =0x20003F80
  movs r1, #0
1: ldr r2, [r1]
  str r2, [r0, r1]
  adds r1, #4
  cmp r1, #0x80
  bne 1b
  PUT VTOR, 0x20003F80
  PUT ISPR, 0x00010000
  isb
  bx lr
2: PUT ICPR, 0x00010000
  b save_lr

monitor_pended:
  PUT DEMCR, 0x00020000         @ not enabled yet
  isb
  PUT DEMCR, 0x00030000
  isb
  bx lr

late_and_less_urgent:           @ all at once: by priority, then by number
  cpsid i
  PUTB IPR, 0x80
  PUTB IPR + 1, 0x40
  PUT SHPR3, 0x80C00000         @ SysTick, PendSV
  PUT ISPR, 7
  PUT ICSR, 0x14000000
  cpsie i
  isb
  bx lr

priority_group_of_two:          @ 0x60 and 0x40 are one group: no preemption; 0x20 is another
  HOOK 16, 1f
  HOOK 17, 2f
  PUT AIRCR, 0x05FA0500
  PUTB IPR, 0x60
  PUTB IPR + 1, 0x40
  PUTB IPR + 2, 0x20
  PUT ISPR, 1
  isb
  bx lr
1: PUT ISPR, 2
  isb
  bx lr
2: PUT ISPR, 4
  isb
  bx lr

pend_by_shcsr:                  @ a handler makes a fault pending that is less urgent than itself
  HOOK 11, 1f
  PUT SHPR1, 0x00800000
  svc 0
  bx lr
1: ldr r0, =SHCSR
  ldr r1, [r0]
  ldr r2, =RESULT
  str r1, [r2]                  @ SVCall is active, the three are enabled
  orr r1, r1, #0x1000
  str r1, [r0]
  ldr r1, [r0]
  str r1, [r2, #4]
  bx lr

reset_request:
  ldr r0, =RESULT
  ldr r1, [r0]
  adds r1, #1
  str r1, [r0]
  cmp r1, #3
  beq done
  PUT AIRCR, 0x05FA0004
  b .

vtor:
  ldr r0, =0x20000400
  movs r1, #0
1: ldr r2, [r1]
  str r2, [r0, r1]
  adds r1, #4
  cmp r1, #0xC0
  bne 1b
  ldr r2, =2f + 1
  str r2, [r0, #44]
  PUT 0xE000ED08, 0x20000400
  svc 0
  bx lr
2: ldr r0, =RESULT
  movs r1, #77
  str r1, [r0]
  bx lr

  .ltorg
