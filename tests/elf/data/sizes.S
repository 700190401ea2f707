@ Symbols without sizes, functions that share an address, and names that name no function.
  .syntax unified
  .thumb
  .text
  .type NoSize, %function
  .thumb_func
  .global NoSize
NoSize:
  movs r0, #1
  bx lr
  .type Shared, %function
  .type SharedLonger, %function
  .thumb_func
Shared:
  .thumb_func
SharedLonger:
  movs r0, #2
  bx lr
  .size Shared, 2
  .size SharedLonger, 4
  .type LastOfSection, %function
  .thumb_func
LastOfSection:
  movs r0, #3
  bx lr
  nop
  nop

  .data
  .type NoSizeObject, %object
NoSizeObject:
  .word 1, 2, 3
  .type EndObject, %object
  .size EndObject, 4
EndObject:
  .word 4
