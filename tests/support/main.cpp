#include <gtest/gtest.h>
#include <unistd.h>

#include "log/log.hpp"

int main(int argc, char** argv) {
  // The log's temporary file stays open but leaves nothing behind.
  unlink(varnoth::GlobalLog.get_file_path().c_str());
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
