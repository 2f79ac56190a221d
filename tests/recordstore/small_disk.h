#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>

#include "tests/recordstore/store_server.h"

namespace kova::testing {

/// A disk of its own, of so many MB, that the first server has at a folder; gone with it. `IsThere` is false where none can be
/// mounted.
class SmallDisk {
 public:
  SmallDisk(std::string folder, int megabytes)
      : folder_(std::move(folder)),
        isFolderOurs_(Run("mkdir " + folder_)),
        isThere_(Run("mount -t tmpfs -o mode=700,size=" + std::to_string(megabytes) +
                     "m,uid=$(stat -c %u " + Environment("KOVA_SERVER_FOLDER") + "/node1/data) kova " + folder_)) {}
  ~SmallDisk() {
    EXPECT_TRUE(!isThere_ || Run("umount " + folder_));
    EXPECT_TRUE(!isFolderOurs_ || Run("rmdir " + folder_));
  }
  bool IsThere() const { return isThere_; }
  void Fill() const { (void)Run("dd if=/dev/zero of=" + folder_ + "/filled bs=4096"); }
  void Clear() const { EXPECT_TRUE(Run("rm " + folder_ + "/filled")); }
  static bool Run(const std::string& command) { return std::system((command + " >/dev/null 2>&1").c_str()) == 0; }

 private:
  std::string folder_;
  bool isFolderOurs_, isThere_;
};

}  // namespace kova::testing
