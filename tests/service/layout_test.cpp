// The structures of <tembra/service.h> as programs that were built long ago know them.
#include <gtest/gtest.h>
#include <tembra/service.h>

#include <cstddef>

namespace {

// The size comes first and is as wide as a pointer; the rest follows without a gap, on 32 and on 64 bits.
constexpr std::size_t kSize = sizeof(std::size_t);

using KnownFailure = struct tembra_failure;
static_assert(offsetof(KnownFailure, size) == 0 && offsetof(KnownFailure, count) == kSize);
static_assert(offsetof(KnownFailure, server) == kSize + 4 && offsetof(KnownFailure, cause) == kSize + 8);
static_assert(offsetof(KnownFailure, error) == kSize + 12 && offsetof(KnownFailure, text) == kSize + 16);
static_assert(sizeof(KnownFailure) == kSize + 144);

using KnownDevice = struct tembra_device;
static_assert(offsetof(KnownDevice, id) == 0 && offsetof(KnownDevice, type) == 4 && offsetof(KnownDevice, radio) == 8);
static_assert(offsetof(KnownDevice, address) == 12 && offsetof(KnownDevice, values) == 16 &&
              offsetof(KnownDevice, name) == 20);
static_assert(offsetof(KnownDevice, type_name) == 381 && sizeof(KnownDevice) == 456 && alignof(KnownDevice) == 4);

using KnownHistory = struct tembra_database_history;
static_assert(offsetof(KnownHistory, size) == 0 && offsetof(KnownHistory, repaired) == kSize);
static_assert(offsetof(KnownHistory, lost) == kSize + 4 && sizeof(KnownHistory) == kSize + 8);

static_assert(TEMBRA_FAILURE_SEND == 1 && TEMBRA_FAILURE_OPENING == 2);
static_assert(TEMBRA_OPENING_IN_USE == 1 && TEMBRA_OPENING_NO_SOCKET == 2);
static_assert(TEMBRA_OPENING_NO_THREAD == 3 && TEMBRA_OPENING_REPLACED == 4);
static_assert(TEMBRA_OPENING_NO_MEMORY == 5);
static_assert(TEMBRA_RADIO_OTHER == 0 && TEMBRA_RADIO_ZIGBEE == 1 && TEMBRA_RADIO_ZWAVE == 2 && TEMBRA_RADIO_IP == 3);

TEST(ServiceStructures, ALargerOneKeepsWhatTheLibraryDoesNotKnow) {
  struct {
    struct tembra_failure known;
    int added;
  } failure{};
  failure.known.size = sizeof failure;
  failure.known.count = failure.added = 77;
  EXPECT_EQ(tembra_last_failure(TEMBRA_FAILURE_SEND, &failure.known), 0);
  EXPECT_EQ(failure.known.size, sizeof failure);
  EXPECT_EQ(failure.known.count, 0U);
  EXPECT_EQ(failure.added, 77);
}

TEST(ServiceStructures, ASmallerOneIsRefused) {
  for (const std::size_t size : {std::size_t{0}, sizeof(KnownFailure) - 1}) {
    KnownFailure failure{size, 77, 77, 77, 77, "x"};
    EXPECT_EQ(tembra_last_failure(TEMBRA_FAILURE_OPENING, &failure), EINVAL);
    EXPECT_EQ(failure.count, 77U);
  }
  KnownHistory history{sizeof history - 1, 77, 77};
  EXPECT_EQ(tembra_read_database_history(&history), EINVAL);
  EXPECT_EQ(history.repaired, 77U);
}

}  // namespace
