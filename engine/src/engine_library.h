// The loaded engine library. It is looked up at the first call of any of its functions: beside the
// binary that holds this binding, then on the loader's own path. A library whose interface
// fingerprint differs from the one that this binding was made for is refused: one line on standard
// error says so, and every function then answers zero. Any thread may come first.
#pragma once

namespace engine_library {

// Ends with a null pointer; generated.
extern const char* const kFunctionNames[];
extern const int kCount;

// The address of function number `index`, null while there is no usable library.
void* Address(int index);

template <class Pointer>
Pointer Function(int index) {
  return reinterpret_cast<Pointer>(Address(index));
}

}  // namespace engine_library
