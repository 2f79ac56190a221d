#include <gtest/gtest.h>

#ifndef _WIN32
// For the leak checker: the MariaDB driver keeps a little of every connection.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() { return "leak:libmaodbc\n"; }
#endif

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
