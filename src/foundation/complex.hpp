#pragma once

namespace varnoth {

/// A complex value. It has no virtual operations, so that an array of complex values is a plain
/// block.
template <class T>
struct COMPLEX {
  T re{};
  T im{};
};

}  // namespace varnoth
