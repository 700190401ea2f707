// What compilers call by themselves; without debug information in every program of the corpus.
void* memcpy(void* to, const void* from, unsigned size) {
  const char* q = from;
  for (char* p = to; size--;) *p++ = *q++;
  return to;
}
void* memset(void* to, int value, unsigned size) {
  for (char* p = to; size--;) *p++ = (char)value;
  return to;
}
void __aeabi_unwind_cpp_pr0(void) {}
