// SPDX-License-Identifier: Apache-2.0

#include "base/sha256.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace texturon {
namespace {

// The examples of FIPS 180-4, and lengths about the end of a block.
TEST(Sha256, AgreesWithPublishedDigests) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
      {std::string(55, 'x'), "d5e285683cd4efc02d021a5c62014694958901005d6f71e89e0989fac77e4072"},
      {std::string(63, 'x'), "75220b47218278e656f2013bb8f0c455a25eaf01e86c64924e9d48d89776d6f2"},
      {std::string(64, 'x'), "7ce100971f64e7001e8fe5a51973ecdfe1ced42befe7ee8d5fd6219506b5393c"},
      {std::string(119, 'x'), "000b48d4edf0fa7bee3c6236ecd2785baa5db4eeb8bb54341b029e0d9fa5fb0c"},
  };
  for (const auto& [bytes, digest] : cases) {
    EXPECT_EQ(Sha256Of(bytes), digest) << bytes.size();
    EXPECT_EQ(Sha256Of(bytes, DigestRoute::kPlain), digest) << bytes.size();
  }
}

}  // namespace
}  // namespace texturon
