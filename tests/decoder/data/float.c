// Floating point code for the cores that have the unit.
float mix(float a, float b, const float* p, int n) {
  float s = a * b + p[0];
  for (int i = 0; i < n; ++i) s = s * p[i] - b / (p[i] + 1.5f);
  return s > 0.0f ? __builtin_sqrtf(s) : -s;
}
double widen(float a, double b, int i, unsigned u) { return a * b + i - (double)u; }
int narrow(double d, float f) { return (int)d + (int)(unsigned)f; }
