// Firmware that uses every channel to a debugger: it prints through stimulus ports, echoes what comes through the real time
// terminal, and keeps variables that change with time.

typedef unsigned int U32;
typedef unsigned short U16;
typedef unsigned char U8;

#define REG(Addr) (*(volatile U32*)(Addr))
#define SYST_CSR REG(0xE000E010)
#define SYST_RVR REG(0xE000E014)
#define SYST_CVR REG(0xE000E018)
#define ITM_PORT 0xE0000000
#define ITM_TER REG(0xE0000E00)
#define ITM_TCR REG(0xE0000E80)

// The real time terminal's side of the firmware.
struct QUEUE {
  const char* sName;
  char* pBuffer;
  U32 Size;
  volatile U32 WrOff;
  volatile U32 RdOff;
  U32 Flags;
};
#define QUEUE_SIZE 32
struct {
  char Id[16];
  int NumUp;
  int NumDown;
  struct QUEUE Up;
  struct QUEUE Down;
} _MORVEK_RTT;
static char acUp[QUEUE_SIZE], acDown[QUEUE_SIZE];

static const char ID[16] = "MORVEK RTT";

static void InitQueue(struct QUEUE* p, char* pBuffer) {
  p->sName = "Terminal";
  p->pBuffer = pBuffer;
  p->Size = QUEUE_SIZE;
}

static void InitTerminal(void) {
  _MORVEK_RTT.NumUp = _MORVEK_RTT.NumDown = 1;
  InitQueue(&_MORVEK_RTT.Up, acUp);
  InitQueue(&_MORVEK_RTT.Down, acDown);
  for (U32 i = 0; i < sizeof(ID); i++) ((volatile char*)_MORVEK_RTT.Id)[i] = ID[i];
}

static int Get(void) {
  struct QUEUE* p = &_MORVEK_RTT.Down;
  if (p->RdOff == p->WrOff) return -1;
  const char c = p->pBuffer[p->RdOff];
  p->RdOff = p->RdOff + 1 == p->Size ? 0 : p->RdOff + 1;
  return c;
}

static void Put(char c) {
  struct QUEUE* p = &_MORVEK_RTT.Up;
  const U32 Next = p->WrOff + 1 == p->Size ? 0 : p->WrOff + 1;
  while (Next == p->RdOff) {
  }
  p->pBuffer[p->WrOff] = c;
  p->WrOff = Next;
}

__attribute__((noinline)) void Echo(void) {
  for (int c = Get(); c >= 0; c = Get()) Put(c >= 'a' && c <= 'z' ? (char)(c - 32) : (char)c);
}

// Stimulus ports.
static int IsPortOn(U32 Port) {
  return (ITM_TCR & 1) && (ITM_TER >> Port & 1);
}

static void Print(const char* sText) {
  if (!IsPortOn(0)) return;
  for (; *sText; sText++) {
    while (!REG(ITM_PORT)) {
    }
    *(volatile U8*)ITM_PORT = (U8)*sText;
  }
}

// What the debugger watches.
volatile U32 Ticks;   // milliseconds
volatile U16 Ramp;    // three times as fast
volatile U8 Level;    // from 0 to 99 and again
volatile U32 Flood;   // set by the debugger: words to be sent through port 2
volatile U32 Passes;

void SysTickHandler(void) {
  Ticks++;
  Ramp = (U16)(3 * Ticks);
}

__attribute__((noinline)) void Work(void) {
  Level = Level == 99 ? 0 : (U8)(Level + 1);
  Passes++;
}

__attribute__((noreturn)) static void Main(void) {
  InitTerminal();
  SYST_RVR = CLOCK_HZ / 1000 - 1;
  SYST_CVR = 0;
  SYST_CSR = 7;
  for (;;) {
    const U32 Now = Ticks;
    Work();
    Echo();
    Print("tick\n");
    if (IsPortOn(1)) {
      *(volatile U16*)(ITM_PORT + 4) = 0x1234;
      *(volatile U32*)(ITM_PORT + 4) = 0x89ABCDEF;
    }
    for (U32 i = 0; i < Flood; i++) REG(ITM_PORT + 8) = i;
    Flood = 0;
    while (Ticks == Now) __asm volatile("wfi");
  }
}

extern U8 BssStart[], BssEnd[], StackTop[];

void ResetHandler(void) {
  for (volatile U8* p = BssStart; p < BssEnd; p++) *p = 0;
  Main();
}

void Default(void) {
  for (;;) {
  }
}

__attribute__((section(".vectors"), used)) static const void* const apVectors[16] = {
    StackTop, (void*)ResetHandler, (void*)Default, (void*)Default, [15] = (void*)SysTickHandler};
