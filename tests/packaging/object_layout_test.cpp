// The object's fields are contract: front ends that were built long ago read them where they stand.
#include <cxxabi.h>
#include <gtest/gtest.h>
#include <tembra/association.h>

#include <cstddef>
#include <ostream>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <vector>

namespace {

struct FieldPlace {
  std::string name;
  std::ptrdiff_t offset;
  std::ptrdiff_t size;
  bool operator==(const FieldPlace& other) const {
    return name == other.name && offset == other.offset && size == other.size;
  }
};

void PrintTo(const FieldPlace& place, std::ostream* out) {
  *out << place.name << " at " << place.offset << ", " << place.size << " bytes";
}

// Where a field really stands in the object that the library made.
class Measure {
 public:
  template <typename Field>
  FieldPlace operator()(const char* name, Field TembraAssociation::*field) const {
    const auto* begin = reinterpret_cast<const char*>(&(assoc_->*field));
    const auto* end = reinterpret_cast<const char*>(&(assoc_->*field) + 1);
    return {name, begin - reinterpret_cast<const char*>(assoc_), end - begin};
  }

 private:
  const TembraAssociation* assoc_ = TembraAssociation::getInstance();
};

std::vector<FieldPlace> fieldsInOrder() {
  using T = TembraAssociation;
  const Measure at;
  return {
      at("running", &T::running),
      at("closeMark", &T::closeMark),
      at("devName", &T::devName),
      at("devLocation", &T::devLocation),
      at("sock", &T::sock),
      at("clientRole", &T::clientRole),
      at("activeRadio", &T::activeRadio),
      at("classifiedType", &T::classifiedType),
      at("devType", &T::devType),
      at("removedName", &T::removedName),
      at("removedId", &T::removedId),
      at("zbDevice", &T::zbDevice),
      at("zwNodeWork", &T::zwNodeWork),
      at("zwNodeRx", &T::zwNodeRx),
      at("localAddr", &T::localAddr),
      at("logger", &T::logger),
      at("eventCallback", &T::eventCallback),
      at("assocState", &T::assocState),
      at("lastEventCode", &T::lastEventCode),
      at("cancelTarget", &T::cancelTarget),
  };
}

TEST(ObjectLayout, EachFieldStandsAtItsPlace) {
#ifdef __LP64__
  const std::size_t size = 3144;
  const std::vector<FieldPlace> expected = {
      {"running", 8, 4},          {"closeMark", 12, 4},      {"devName", 16, 180},       {"devLocation", 196, 180},
      {"sock", 376, 4},           {"clientRole", 380, 4},    {"activeRadio", 384, 4},    {"classifiedType", 388, 4},
      {"devType", 392, 4},        {"removedName", 396, 180}, {"removedId", 576, 4},      {"zbDevice", 580, 444},
      {"zwNodeWork", 1024, 1036}, {"zwNodeRx", 2060, 1036},  {"localAddr", 3096, 16},    {"logger", 3112, 8},
      {"eventCallback", 3120, 8}, {"assocState", 3128, 4},   {"lastEventCode", 3132, 4}, {"cancelTarget", 3136, 4}};
#else
  const std::size_t size = 3128;
  const std::vector<FieldPlace> expected = {
      {"running", 4, 4},          {"closeMark", 8, 4},       {"devName", 12, 180},       {"devLocation", 192, 180},
      {"sock", 372, 4},           {"clientRole", 376, 4},    {"activeRadio", 380, 4},    {"classifiedType", 384, 4},
      {"devType", 388, 4},        {"removedName", 392, 180}, {"removedId", 572, 4},      {"zbDevice", 576, 444},
      {"zwNodeWork", 1020, 1036}, {"zwNodeRx", 2056, 1036},  {"localAddr", 3092, 16},    {"logger", 3108, 4},
      {"eventCallback", 3112, 4}, {"assocState", 3116, 4},   {"lastEventCode", 3120, 4}, {"cancelTarget", 3124, 4}};
#endif
  ASSERT_EQ(expected.size(), 20U);
  EXPECT_EQ(fieldsInOrder(), expected);
  EXPECT_EQ(sizeof(TembraAssociation), size);
}

TEST(ObjectLayout, NothingStandsBeforeOrBetweenTheFieldsBesidesTheVirtualTable) {
  std::ptrdiff_t end = sizeof(void*);
  for (const FieldPlace& place : fieldsInOrder()) {
    EXPECT_EQ(place.offset, end) << place.name;
    end = place.offset + place.size;
  }
}

TEST(ObjectLayout, TheClassHasNoBaseAndAVirtualDestructor) {
  EXPECT_TRUE(typeid(typeid(TembraAssociation)) == typeid(abi::__class_type_info));
  EXPECT_TRUE(std::has_virtual_destructor_v<TembraAssociation>);
}

}  // namespace
