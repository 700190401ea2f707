  .syntax unified
  .cpu cortex-m4
  .thumb

  .section .vectors, "a"
  .word 0x20008000
  .word ResetHandler + 1

  .section .text.start, "ax"
  .global ResetHandler
  .type ResetHandler, %function
ResetHandler:
  bl main
  b .
  .word 0x12345678
  .size ResetHandler, . - ResetHandler
