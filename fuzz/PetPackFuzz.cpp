#include "base/Json.h"
#include "pet/PetPack.h"

#include <cstdint>
#include <cstdlib>

/// Any bytes give a pack or none, and what is written of a pack reads as the same text again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  using namespace morvo;
  const auto pack = petPackFromJson(
      QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
  if (!pack) {
    return 0;
  }
  const QByteArray once = Json::pretty(toJson(*pack));
  const auto again = petPackFromJson(once);
  if (!again || Json::pretty(toJson(*again)) != once) {
    std::abort();
  }
  return 0;
}
