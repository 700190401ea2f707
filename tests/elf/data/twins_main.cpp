// One name for several things, and values that stand in no memory.
extern "C" {
extern volatile int level;
void init(void);
int first(void);
int second(void);
}

enum class Size : unsigned long long { Huge = 0xFFFFFFFFFFFFFFFF };

class Tank {
public:
  static const int limit = 42;
  explicit Tank(int Start);
  int Level[5];
};

__attribute__((noinline)) Tank::Tank(int Start) : Level{Start, Start} {}

static const float kf = 1.25f;
static const double kd = -2.5;
static Tank Only(3);
int (&Levels)[5] = Only.Level;
Size Largest = Size::Huge;

int small(int Value) {
  struct Local {
    char a;
  } volatile Part = {static_cast<char>(Value)};
  return Part.a;
}

int large(int Value) {
  struct Local {
    int a, b, c;
  } volatile Part = {Value, Value, Value};
  return Part.b;
}

extern "C" int main() {
  init();
  float f = level * kf;
  double d = level * kd;
  return first() + second() + small(level) + large(level) + Tank::limit + static_cast<int>(f) + static_cast<int>(d);
}
