// A core form that returns another failure number than its message buffer says.
#include <cstdio>

#include "src/frame/classic.h"

int main() {
  const auto core = [](char* message_buffer, Integer* ifail, int /*length*/) {
    QFsprintf(message_buffer, "%s %5ld %5ld %5ld", "C06FAF", 1, 99998, 0);
    *ifail = 3;
  };
  Integer ifail = 1;
  tesk::call_core("C06FAF", &ifail, core);
  std::printf("[%d]\n", int(ifail));
}
