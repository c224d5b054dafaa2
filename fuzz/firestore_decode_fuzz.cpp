// libFuzzer target: arbitrary text as a value and as a document of the
// database's REST interface; whatever decodes must encode and decode again to
// the same value.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "cloud/firestore.h"
#include "support/json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using sodam::Firestore;
  const auto json = sodam::parseJson(std::string_view(reinterpret_cast<const char*>(data), size));
  if (!json) return 0;
  (void)Firestore::decodeDocument(*json);
  const auto value = Firestore::decode(*json);
  if (!value) return 0;
  const auto again = Firestore::decode(Firestore::encode(*value));
  // Timestamps lose their fraction on the way out, so compare them once more
  // after a second round.
  if (!again) __builtin_trap();
  const auto third = Firestore::decode(Firestore::encode(*again));
  if (!third || !(*third == *again)) __builtin_trap();
  return 0;
}
