#include "sub/util.c"

int Separate(int n);
volatile int Sink;

int Shadowed(int n) {
  int Sum = 0;
  {
    int i;
    {
      int i = n;  // both blocks begin with this line
      Sum += i;
    }
    i = 7;
    Sum += i;
  }
  return Sum;
}

int Counted(int n) {
  static int Count = 1;
  if (n) {
    static int Count = 2;
    Sink = Count++;
  }
  return Count++;
}

int main(void) {
  return Shadowed(Sink) + Counted(Sink) + Included(Sink) + Separate(Sink);
}
