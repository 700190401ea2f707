// What two units of C++ and one of C share. Each class is described whole in one unit and only declared in another.
struct Handle;

namespace Plant {

struct Valve {
  virtual int Open(int Step);
  int Position = 1;
  static int NumValves;
};

struct Meter {
  virtual int Read();
  int Count = 2;
};

class Pump : public Valve, public Meter {
public:
  int Open(int Step) override;
  int Read() override;
  long long Flow = 3;
};

}  // namespace Plant

extern "C" Handle* OpenHandle(int Number);
