#pragma once

namespace varnoth {

/// A complex value; no virtual operations, so that an array of them is a plain block.
template <class T>
struct COMPLEX {
  T re{};
  T im{};
};

}  // namespace varnoth
