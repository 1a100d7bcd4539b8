// Where the fields of the object stand: front ends are compiled against it.
#include <gtest/gtest.h>

#include <type_traits>

#include "harness/router.h"

namespace {

struct Field {
  const char* name;
  const void* address;
  std::size_t offset;
};

}  // namespace

TEST(ObjectLayoutTest, FieldsStandInTheirOrderBehindTheVirtualTable) {
  harness::Router router;
  const TembraAssociation& a = router.assoc();
  const Field fields[] = {
      {"running", &a.running, 8},
      {"closeMark", &a.closeMark, 12},
      {"devName", &a.devName, 16},
      {"devLocation", &a.devLocation, 196},
      {"sock", &a.sock, 376},
      {"clientRole", &a.clientRole, 380},
      {"activeRadio", &a.activeRadio, 384},
      {"classifiedType", &a.classifiedType, 388},
      {"devType", &a.devType, 392},
      {"removedName", &a.removedName, 396},
      {"removedId", &a.removedId, 576},
      {"zbDevice", &a.zbDevice, 580},
      {"zwNodeWork", &a.zwNodeWork, 1024},
      {"zwNodeRx", &a.zwNodeRx, 2060},
      {"localAddr", &a.localAddr, 3096},
      {"logger", &a.logger, 3112},
      {"eventCallback", &a.eventCallback, 3120},
      {"assocState", &a.assocState, 3128},
      {"lastEventCode", &a.lastEventCode, 3132},
      {"cancelTarget", &a.cancelTarget, 3136},
  };
  const auto* base = reinterpret_cast<const unsigned char*>(&a);
  for (const Field& field : fields) {
    EXPECT_EQ(static_cast<const unsigned char*>(field.address) - base, static_cast<std::ptrdiff_t>(field.offset))
        << field.name;
  }
  EXPECT_EQ(sizeof a, 3144U);
}

TEST(ObjectLayoutTest, TheDestructorIsVirtualAndTheCopyIsItsOwn) {
  EXPECT_TRUE(std::has_virtual_destructor_v<TembraAssociation>);
  EXPECT_TRUE(std::is_copy_constructible_v<TembraAssociation>);
  EXPECT_FALSE(std::is_trivially_copy_constructible_v<TembraAssociation>);
  EXPECT_FALSE(std::is_default_constructible_v<TembraAssociation>);
}
