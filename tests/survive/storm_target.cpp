// A program that does little but log and allocate, to be hit by signals: a handler is most likely
// to interrupt the allocator or the C library's streams here.

#include <string>
#include <vector>

#include "framework/log/log.hpp"
#include "framework/process/controller_ifc.hpp"

int main(int argc, char** argv) {
  using namespace varnoth;
  CONTROLLER_IFC controller;
  controller.init(argc, argv, true);
  std::vector<std::string> texts(64);
  for (std::size_t i = 0;; ++i) {
    texts[i % texts.size()] = std::string(i * 37 % 5000, 'x');
    GlobalLog.printf_line(INFO, "%zu", i);
    GlobalLog.set(INFO) << "piece " << 0.5 << "\n";
  }
}
