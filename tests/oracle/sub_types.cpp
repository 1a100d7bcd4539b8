#include "sub_types.h"

#include <map>

#include "offsets.h"

namespace oracle {
namespace {

constexpr std::size_t kLongIndexText = 10;

Types ofGenericDevice(const Capabilities& raised, std::size_t indexTextLength) {
  if (raised.basic != 0 && raised.multilevel != 0) return {55, 52, 41};
  if (raised.acExtender != 0) return {54, 46};
  const bool isBasicSensor = raised.basic != 0 && indexTextLength < kLongIndexText;
  if (raised.binarySensor != 0 || isBasicSensor) return {39, 11, 37, 36, 55, 42};
  return {};
}

const std::map<int, Types> kRows = {
    {1, {42, 1, 43}},  {44, {42, 1, 43}},          {2, {2, 52, 55}},           {3, {39, 41, 38, 37, 49}},
    {6, {37, 49, 36}}, {10, {21, 19, 10}},         {35, {25, 40, 27, 56, 49}}, {45, {43, 45}},
    {47, {7, 46, 54}}, {59, {39, 49, 36, 37, 41}},
};

}  // namespace

Types subTypesOf(int type, const Capabilities& raised, std::size_t indexTextLength) {
  if (type == kGenericDevice) return ofGenericDevice(raised, indexTextLength);
  const auto row = kRows.find(type);
  return row == kRows.end() ? Types{0} : row->second;
}

}  // namespace oracle
