#include "parts.h"

int Pipe::NumPipes = 3;

Pipe::Pipe(Oil::Flow Start) : Size(Start.Rate) {}
Pipe::Pipe(Water::Flow Start) : Size(Start.Rate + 1) {}

int Pipe::Width() const {
  return Size;
}

template <class T>
Tank<T>::Tank(T Start) : Level(Start), Limit(Start) {}

template <class T>
void Tank<T>::Fill() {
  Level = Limit;
}

template struct Tank<char>;
template struct Tank<double>;
template struct Tank<Oil::Flow>;
template struct Tank<Water::Flow>;
