#include "KESTparse/bedmaterial/IRbedmat.h"

#include "KESTparse/bedmaterial/IRgrainclass.h"

namespace KESTparse {

std::size_t IRbedmat::numGrainClasses() const {
  return grncls_ptr == nullptr ? 0 : grncls_ptr->diameters.size();
}

}  // namespace KESTparse
