// One name at several places: a variable in a block of a function that is inlined in one caller and called by the
// other, beside a global one; enumerators in a namespace. And floating-point constants of other sizes than the usual.
int Calls = 99;

namespace Plant {
enum Mode { Idle = 3, Busy };
enum class Alarm { Off = 7 };
Mode State = Busy;
Alarm Last = Alarm::Off;
}  // namespace Plant

static const long double Ratio = 3.25L;
static const __fp16 Half = 1.5;

static int Count(int Step) {
  if (Step > 3) {
    static int Calls;
    return Calls += Step;
  }
  return Step;
}

int (*Counter)(int) = Count;

extern "C" int main() {
  return Count(Calls) + Counter(Plant::State) + static_cast<int>(Ratio) + static_cast<int>(Half);
}
