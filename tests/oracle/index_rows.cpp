#include "index_rows.h"

#include <algorithm>

namespace oracle {
namespace {

constexpr IndexRow kIndexRows[] = {
    {0x20, 0, 255, 14},                 // basic
    {0x25, 0, 255, 1},                  // binary switch
    {0x26, 0, 0, 17},                   // multilevel switch
    {0x26, 0, 255, kUndefined},         //
    {0x30, 0, 255, 2},                  // binary sensor
    {0x31, 1, 1, 25},                   // multilevel sensor
    {0x31, 3, 3, 28},                   //
    {0x31, 5, 5, 27},                   //
    {0x31, 0, 255, kUndefined},         //
    {0x32, 0, 0, 80},                   // meter
    {0x32, 8, 8, 34},                   //
    {0x32, 0, 255, kUndefined},         //
    {0x40, 0, 255, 35},                 // thermostat mode
    {0x42, 0, 255, 36},                 // thermostat operating state
    {0x43, 1, 1, 37},                   // thermostat setpoint
    {0x43, 2, 2, 38},                   //
    {0x43, 0, 255, kUndefined},         //
    {0x44, 0, 255, 39},                 // thermostat fan mode
    {0x5B, 0, 255, 117},                // central scene
    {0x62, 0, 0, 22},                   // door lock
    {0x62, 0, 255, kUndefined},         //
    {0x63, 0, 0, kUndefined},           // user code
    {0x63, 1, 254, 81},                 //
    {0x63, 255, 255, 79},               //
    {0x66, 0, 255, 44},                 // barrier operator
    {0x70, 27, 27, 49},                 // configuration
    {0x70, 33, 33, 51},                 //
    {0x70, 0, 255, kUndefined},         //
    {0x71, 2, 2, 9},                    // alarm
    {0x71, 0, 255, kUndefined},         //
    {0x80, 0, 255, 50},                 // battery
    {kOtherClass, 0, 255, kUndefined},  //
};

}  // namespace

std::span<const IndexRow> indexRows() { return kIndexRows; }

const IndexRow& indexRow(int commandClass, int index) {
  return *std::find_if(std::begin(kIndexRows), std::end(kIndexRows), [=](const IndexRow& row) {
    return (row.commandClass == commandClass || row.commandClass == kOtherClass) && index >= row.first &&
           index <= row.last;
  });
}

}  // namespace oracle
