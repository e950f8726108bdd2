#include "base/sha256.h"

#include <gtest/gtest.h>

#include <string>

namespace qdm {
namespace {

std::string DigestOf(const std::string& text) { return HexDigits(Sha256(Bytes(text.begin(), text.end()))); }

// The published examples, and every place at which the padding needs another block.
TEST(Sha256, GivesThePublishedDigests) {
  EXPECT_EQ(DigestOf(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(DigestOf("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(DigestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
  EXPECT_EQ(DigestOf(std::string(1000000, 'a')),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
  std::string all;
  for (std::size_t length = 0; length < 200; ++length) all += DigestOf(std::string(length, 'x'));
  EXPECT_EQ(DigestOf(all), "f61ffcc417e1f0e59eba2da7fa32fbe05b64e478b68c6bacf990455f00248b98");
}

}  // namespace
}  // namespace qdm
