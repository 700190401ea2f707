  .syntax unified
  .section .vectors, "ax"
  .arm
  .global Start
  .type Start, %function
Start:
  ldr sp, =__stack_top
  b Run
  .ltorg
  .size Start, . - Start
