#include "KESTparse/root/IRparallel.h"

namespace KESTparse {

void IRparallel::getDescription(std::ostream& out) const {
  out << "This block defines parameters concerning the parallel execution of KESTRIX. It has to be defined only for simulations on multi-core shared memory systems when multiple cores shall be used.";
}

void IRparallel::createTags() {
  integer<&Self::number_threads>(
      "The number of threads usually equals the number of used cores, although the final mapping of the threads on the cores is managed by the operating system.")
      .defaultsTo("1")
      .preset("1.0");
}

void IRparallel::getExample(std::ostream& out) const {
  out << "PARALLEL {\n  number_threads = 4\n}\n";
}

}  // namespace KESTparse
