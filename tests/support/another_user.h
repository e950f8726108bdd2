// Root may read and write everything, whatever the permissions say: another user for the length of a test.
// Who is none already stays who he is.
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

namespace qdm {

class AnotherUser {
 public:
  static constexpr uid_t kNobody = 65534;

  AnotherUser() { EXPECT_EQ(wasRoot_ ? ::seteuid(kNobody) : 0, 0); }
  ~AnotherUser() { EXPECT_EQ(wasRoot_ ? ::seteuid(0) : 0, 0); }
  AnotherUser(const AnotherUser&) = delete;
  AnotherUser& operator=(const AnotherUser&) = delete;

 private:
  const bool wasRoot_ = ::geteuid() == 0;
};

}  // namespace qdm
