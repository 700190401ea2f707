  .syntax unified
  .section .vectors, "a"
  .word __stack_top
  .word Start
  .word Stuck
  .word Stuck

  .text
  .thumb_func
  .global Start
  .type Start, %function
Start:
  b Run
  .size Start, . - Start

  .thumb_func
  .type Stuck, %function
Stuck:
  b Stuck
  .size Stuck, . - Stuck
