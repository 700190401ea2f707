#include "parts.h"

Tank<double>* OfDouble;
Tank<char>* OfChar;
Tank<Oil::Flow>* OfOil;
Tank<Water::Flow>* OfWater;

__attribute__((noinline)) Pipe::Pipe(int Start) : Size(Start) {}

extern "C" int main() {
  Pipe Main(4);
  return Main.Width() + Pipe::NumPipes;
}
