struct Handle {
  int Number;
  struct Handle* pNext;
};

static struct Handle Handles[2];

struct Handle* OpenHandle(int Number) {
  Handles[0].Number = Number;
  return Handles;
}
