// The system timer of every Cortex-M core.
#ifndef SYSTICK_H
#define SYSTICK_H

#include <stdint.h>

#define SYSTICK_CONTROL (*(volatile uint32_t *)0xE000E010u)
#define SYSTICK_RELOAD (*(volatile uint32_t *)0xE000E014u)
#define SYSTICK_VALUE (*(volatile uint32_t *)0xE000E018u)

// Calls SysTick_Handler every `cycles` core clock cycles.
static inline void SysTick_Start(uint32_t cycles) {
  SYSTICK_RELOAD = cycles - 1;
  SYSTICK_VALUE = 0;
  SYSTICK_CONTROL = 7;
}

#endif
