// A class of which each of two units defines some members, and templates that one of them only declares.
namespace Oil {
struct Flow {
  int Rate;
};
}  // namespace Oil

namespace Water {
struct Flow {
  char Rate;
};
}  // namespace Water

struct Pipe {
  explicit Pipe(int Start);
  explicit Pipe(Oil::Flow Start);
  explicit Pipe(Water::Flow Start);
  explicit Pipe(char Start);  // nobody defines it
  int Width() const;
  static int NumPipes;
  int Size;
};

template <class T>
struct Tank {
  explicit Tank(T Start);
  virtual void Fill();
  T Level;
  T Limit;
};

extern template struct Tank<char>;
extern template struct Tank<double>;
extern template struct Tank<Oil::Flow>;
extern template struct Tank<Water::Flow>;
