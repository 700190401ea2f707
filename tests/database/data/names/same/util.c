// The other file of this name has code on its first line alone.
int Separate(int n) { return n * 2; }
