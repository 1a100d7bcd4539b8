#include "wire.h"

#include <iterator>

using kit::Bytes;

Wire& Wire::number(std::size_t at, int value) {
  const auto word = static_cast<unsigned>(value);
  for (std::size_t i = 0; i < 4; ++i) bytes_.at(at + i) = static_cast<unsigned char>(word >> (8 * i));
  return *this;
}

Wire& Wire::text(std::size_t at, std::string_view characters) {
  return bytes(at, Bytes(characters.begin(), characters.end()));
}

Wire& Wire::bytes(std::size_t at, const Bytes& some) {
  for (std::size_t i = 0; i < some.size(); ++i) bytes_.at(at + i) = some[i];
  return *this;
}

Bytes hueAnswer(int type, int count, const std::vector<std::string>& entries) {
  Wire answer(3260);
  answer.number(0, type).number(4, count);
  for (std::size_t i = 0; i < entries.size(); ++i) answer.text(8 + 65 * i, entries[i]);
  return answer.all();
}

Bytes nestAnswer(int command, int status, int value) {
  return Wire(12).number(0, command).number(4, status).number(8, value).all();
}

Bytes bridgeList(const std::vector<Slot>& slots) {
  Wire list(3256);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    list.text(30 * i, slots[i].mac).text(750 + 50 * i, slots[i].address);
  }
  return list.number(3252, static_cast<int>(slots.size())).all();
}

Bytes payloadOf(const kit::RecordedEvent& recorded) {
  return {std::begin(recorded.event.payload), std::end(recorded.event.payload)};
}

Bytes payloadOf(const Bytes& start) { return Wire(4096).bytes(0, start).all(); }
