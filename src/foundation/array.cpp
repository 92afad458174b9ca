#include "foundation/array.hpp"

#include "foundation/errors.hpp"
#include "log/log.hpp"

namespace varnoth {

void FailSubArrayAssignment() {
  GlobalLog.set(ALARM) << "never call: SUB_ARRAY<T>::operator=( const SUB_ARRAY< T >& )\n";
  throw ERROR_NOT_IMPLEMENTED();
}

}  // namespace varnoth
