/// \file
/// The least that a C++ program costs: it starts, and ends.

#include <iostream>

int main() {
  std::cout.flush();
}
