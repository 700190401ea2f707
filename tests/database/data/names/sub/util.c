static int Included(int n) { return n + 1; }
