namespace Motor {

class Drive {
 public:
  int Step(int Count);
  static int NumDrives;

  struct LIMITS {
    long unsigned Low;
    long unsigned High;
  } Limits = {1, 9};

 private:
  int Position = 0;
};

int Drive::NumDrives = 1;

int Drive::Step(int Count) {
  Position += Count;
  return Position < static_cast<int>(Limits.High) ? Position : NumDrives;
}

namespace {
Drive Hidden;
}

int Run() { return Hidden.Step(4); }

}  // namespace Motor

int main() { return Motor::Run(); }
