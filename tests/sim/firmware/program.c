// Ordinary compiled code for the comparison test: jump tables, recursion, calls through pointers, 64-bit and floating point
// arithmetic by library calls, bit fields, byte and halfword traffic. It ends at the BKPT in done with a digest of all of it.

typedef unsigned int U32;
typedef unsigned char U8;
typedef unsigned short U16;
typedef unsigned long long U64;

#define NUM_ITEMS 200

static U32 aItems[NUM_ITEMS];
static U8 aBytes[512];
static short aSamples[128];
volatile U32 Digest;

struct FIELDS {
  U32 Low : 5;
  int Signed : 11;
  U32 High : 16;
};

static void Mix(U32 Value) {
  Digest = (Digest ^ Value) * 16777619u + (Digest >> 13);
}

static U32 Next(void) {
  static U32 Seed = 12345;
  Seed = Seed * 1103515245u + 12345u;
  return Seed ^ (Seed >> 15);
}

__attribute__((noinline)) static int Interpret(U32 Op, int A, int B) {
  switch (Op) {
    case 0: return A + B;
    case 1: return A - B;
    case 2: return A * B;
    case 3: return B ? A / B : 0;
    case 4: return B ? (int)((U32)A % (U32)B) : 1;
    case 5: return A << (B & 31);
    case 6: return A >> (B & 31);
    case 7: return (int)((U32)A >> (B & 31));
    case 8: return A < B ? A : B;
    case 9: return A & ~B;
    case 10: return (A > 1000) + (B < -5) * 2 + (A == B) * 4 + ((U32)A > (U32)B) * 8;
    case 11: return __builtin_clz((U32)A | 1) + __builtin_popcount((U32)B);
    default: return (int)__builtin_bswap32((U32)A);
  }
}

static void Sort(U32* pFirst, U32* pLast) {
  if (pFirst >= pLast) return;
  U32 Pivot = pFirst[(pLast - pFirst) / 2];
  U32* i = pFirst;
  U32* j = pLast;
  while (i <= j) {
    while (*i < Pivot) i++;
    while (*j > Pivot) j--;
    if (i <= j) {
      U32 Swap = *i;
      *i++ = *j;
      *j-- = Swap;
    }
  }
  Sort(pFirst, j);
  Sort(i, pLast);
}

static U32 Fibonacci(U32 n) {
  return n < 2 ? n : Fibonacci(n - 1) + Fibonacci(n - 2);
}

static U32 Double(U32 x) {
  return 2 * x;
}
static U32 Square(U32 x) {
  return x * x;
}
static U32 (*const apFuncs[])(U32) = {Double, Square, Fibonacci};

static void Bytes(void) {
  for (U32 i = 0; i < sizeof(aBytes); i++) aBytes[i] = (U8)(Next() >> 7);
  for (U32 i = 1; i < sizeof(aBytes); i++) {
    U16 Pair = (U16)(aBytes[i] | aBytes[i - 1] << 8);
    if (Pair & 0x8000) aBytes[i] ^= (U8)(Pair >> 3);
  }
  U32 Crc = ~0u;
  for (U32 i = 0; i < sizeof(aBytes); i++) {
    Crc ^= aBytes[i];
    for (int Bit = 0; Bit < 8; Bit++) Crc = Crc >> 1 ^ (Crc & 1 ? 0xEDB88320u : 0);
  }
  Mix(Crc);
}

static void Samples(void) {
  for (U32 i = 0; i < 128; i++) aSamples[i] = (short)Next();
  long long Sum = 0;
  for (U32 i = 1; i < 128; i++) {
    int Value = aSamples[i] * aSamples[i - 1] / 3 + (aSamples[i] >> 2);
    if (Value > 32767) Value = 32767;
    if (Value < -32768) Value = -32768;
    aSamples[i] = (short)Value;
    Sum += (long long)Value * aSamples[127 - i];
  }
  Mix((U32)Sum);
  Mix((U32)(Sum >> 32));
}

static void Wide(void) {
  U64 A = 0x123456789ABCDEFull;
  double X = 1.5;
  float Y = 0.25f;
  for (U32 i = 1; i < 20; i++) {
    A = A * 6364136223846793005ull + i;
    A ^= A / (i + 1000000007ull) + A % (Next() | 1);
    X = X * 1.37 + (double)(int)(A >> 40) / 7.0;
    Y = Y / 1.1f + (float)i;
    if (X > 1e9) X -= 1e9;
  }
  Mix((U32)(A >> 32) ^ (U32)A);
  Mix((U32)(int)X);
  Mix((U32)(int)(Y * 1000));
}

__attribute__((noreturn)) void Main(void) {
  struct FIELDS Fields = {0};
  for (U32 i = 0; i < NUM_ITEMS; i++) {
    int Value = Interpret(Next() % 13, (int)Next(), (int)(Next() % 2000) - 1000);
    Fields.Low += (U32)Value;
    Fields.Signed -= Value;
    Fields.High ^= (U32)Value >> 3;
    aItems[i] = (U32)Value + (U32)Fields.Signed + Fields.Low * Fields.High;
  }
  Sort(aItems, aItems + NUM_ITEMS - 1);
  for (U32 i = 0; i < NUM_ITEMS; i++) Mix(aItems[i]);
  for (U32 i = 0; i < 9; i++) Mix(apFuncs[i % 3](i + 3));
  Bytes();
  Samples();
  Wide();
  __asm volatile(".globl done\ndone: bkpt 0");
  for (;;) {
  }
}

extern U8 DataInFlash[], DataStart[], DataEnd[], BssEnd[], StackTop[];

void ResetHandler(void) {
  U8* pTo = DataStart;
  for (U8* pFrom = DataInFlash; pTo < DataEnd; pTo++, pFrom++) *pTo = *pFrom;
  for (; pTo < BssEnd; pTo++) *pTo = 0;
  Main();
}

extern char done;
__attribute__((section(".vectors"), used)) static const void* const apVectors[] = {StackTop, (void*)ResetHandler, &done};
