// Reset handler and vector table of the examples: copies initialised data to RAM, clears the rest, calls main.

#include <stdint.h>

extern uint32_t __stack_top, __data_load, __data_start, __data_end, __bss_start, __bss_end;

int main(void);

void Reset_Handler(void) {
  const uint32_t *source = &__data_load;
  for (uint32_t *target = &__data_start; target < &__data_end;) *target++ = *source++;
  for (uint32_t *target = &__bss_start; target < &__bss_end;) *target++ = 0;
  main();
  for (;;) {
  }
}

// An exception that nobody expects stops here, where a debugger finds it.
void Default_Handler(void) {
  for (;;) {
  }
}

void NMI_Handler(void) __attribute__((weak, alias("Default_Handler")));
void HardFault_Handler(void) __attribute__((weak, alias("Default_Handler")));
void MemManage_Handler(void) __attribute__((weak, alias("Default_Handler")));
void BusFault_Handler(void) __attribute__((weak, alias("Default_Handler")));
void UsageFault_Handler(void) __attribute__((weak, alias("Default_Handler")));
void SVC_Handler(void) __attribute__((weak, alias("Default_Handler")));
void DebugMon_Handler(void) __attribute__((weak, alias("Default_Handler")));
void PendSV_Handler(void) __attribute__((weak, alias("Default_Handler")));
void SysTick_Handler(void) __attribute__((weak, alias("Default_Handler")));

typedef void (*vector)(void);

__attribute__((section(".vectors"), used)) static const vector vectors[16] = {
    (vector)(uintptr_t)&__stack_top,
    Reset_Handler,
    NMI_Handler,
    HardFault_Handler,
    MemManage_Handler,
    BusFault_Handler,
    UsageFault_Handler,
    0,
    0,
    0,
    0,
    SVC_Handler,
    DebugMon_Handler,
    0,
    PendSV_Handler,
    SysTick_Handler,
};
