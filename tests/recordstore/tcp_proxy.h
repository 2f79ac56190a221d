#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "tests/child_process.h"

namespace kova::testing {

/// A network in between, tests/recordstore/tcp_proxy.mjs.
class Proxy {
 public:
  explicit Proxy(const std::string& server) {
    const std::size_t colon = server.find(':');
    int toChild[2], fromChild[2];
    EXPECT_EQ(pipe(toChild), 0);
    EXPECT_EQ(pipe(fromChild), 0);
    const pid_t process = fork();
    if (process == 0) {
      BecomeChild();
      dup2(toChild[0], 0);
      dup2(fromChild[1], 1);
      for (const int fd : {toChild[0], toChild[1], fromChild[0], fromChild[1]}) close(fd);
      execlp("node", "node", KOVA_TESTS_FOLDER "/tcp_proxy.mjs", server.substr(0, colon).c_str(),
             server.substr(colon + 1).c_str(), nullptr);
      _exit(127);
    }
    child_ = std::make_unique<ChildProcess>(process);
    close(toChild[0]);
    close(fromChild[1]);
    to_ = fdopen(toChild[1], "w");
    from_ = fdopen(fromChild[0], "r");
    port_ = Heard();
  }
  ~Proxy() {
    std::fclose(to_);
    std::fclose(from_);
    (void)child_->Wait();
  }
  std::string Host() const { return "127.0.0.1:" + port_; }
  /// Gives the answer.
  std::string Tell(const char* word) {
    std::fprintf(to_, "%s\n", word);
    std::fflush(to_);
    return Heard();
  }

 private:
  std::string Heard() {
    char line[64];
    if (std::fgets(line, sizeof line, from_) == nullptr) return "gone";
    return std::string(line).substr(0, std::string_view(line).find('\n'));
  }
  std::unique_ptr<ChildProcess> child_;
  std::string port_;
  std::FILE* to_ = nullptr;
  std::FILE* from_ = nullptr;
};

}  // namespace kova::testing
