#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>
#include <string_view>

namespace kova::testing {

/// A network in between, tests/recordstore/tcp_proxy.mjs.
class Proxy {
 public:
  explicit Proxy(const std::string& server) {
    const std::size_t colon = server.find(':');
    int toChild[2], fromChild[2];
    EXPECT_EQ(pipe(toChild), 0);
    EXPECT_EQ(pipe(fromChild), 0);
    child_ = fork();
    if (child_ == 0) {
      dup2(toChild[0], 0);
      dup2(fromChild[1], 1);
      for (const int fd : {toChild[0], toChild[1], fromChild[0], fromChild[1]}) close(fd);
      execlp("node", "node", KOVA_TESTS_FOLDER "/tcp_proxy.mjs", server.substr(0, colon).c_str(),
             server.substr(colon + 1).c_str(), nullptr);
      _exit(127);
    }
    close(toChild[0]);
    close(fromChild[1]);
    to_ = fdopen(toChild[1], "w");
    from_ = fdopen(fromChild[0], "r");
    port_ = Heard();
  }
  ~Proxy() {
    std::fclose(to_);
    std::fclose(from_);
    waitpid(child_, nullptr, 0);
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
  pid_t child_ = -1;
  std::string port_;
  std::FILE* to_ = nullptr;
  std::FILE* from_ = nullptr;
};

}  // namespace kova::testing
