// The list of devices for front ends. It only reads: the file's own reader goes through it, not the Depot library.
#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <tembra/platform.h>
#include <tembra/service.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "database/device_database.h"
#include "depot/open_file.h"
#include "depot/ownership.h"
#include "depot/walk.h"
#include "support/text.h"

namespace tembra {
namespace {

// "12" is the key of a device, "12.3" the key of one of its values; other keys begin with no id.
struct Key {
  enum { kOther, kDevice, kValue } kind = kOther;
  int id = 0;
};

Key readKey(depot::File& file, long long offset, const depot::Record& record) {
  char text[16];
  const std::size_t length = std::min(sizeof text, static_cast<std::size_t>(record.keySize));
  Key key;
  if (length == 0 || !file.read(offset + static_cast<long long>(sizeof record), text, length)) return key;
  const auto [end, error] = std::from_chars(text, text + length, key.id);
  if (error != std::errc() || text[0] == '-') return key;
  if (end == text + record.keySize) key.kind = Key::kDevice;
  if (end != text + length && *end == '.') key.kind = Key::kValue;
  return key;
}

tembra_radio radioOf(const DeviceRecord& record) {
  if (record.radioKind == RADIO_ZWAVE) return TEMBRA_RADIO_ZWAVE;
  if (record.radioKind == RADIO_IP) return TEMBRA_RADIO_IP;
  return record.zigbeeAddress == 0 ? TEMBRA_RADIO_OTHER : TEMBRA_RADIO_ZIGBEE;
}

unsigned addressOf(const DeviceRecord& record, tembra_radio radio) {
  if (radio == TEMBRA_RADIO_ZWAVE) return record.zwaveNode;
  return radio == TEMBRA_RADIO_ZIGBEE ? record.zigbeeAddress : 0;
}

tembra_device describe(int id, const DeviceRecord& record) {
  tembra_device device{};
  device.id = id;
  device.radio = radioOf(record);
  device.address = addressOf(record, radioOf(record));
  copyText(device.name, record.name);
  copyText(device.type_name, record.typeName);
  device.type = StrToDevType(device.type_name);
  return device;
}

// The caller's room, in which a later version's devices may be longer.
class Room {
 public:
  Room(tembra_device* devices, std::size_t deviceSize, std::size_t room)
      : begin_(reinterpret_cast<char*>(devices)), deviceSize_(deviceSize), room_(room) {
    if (room > 0) std::memset(begin_, 0, room * deviceSize);
  }

  void add(const tembra_device& device) {
    if (count_ < room_) std::memcpy(begin_ + count_ * deviceSize_, &device, sizeof device);
    ++count_;
  }

  // A device's values mostly stand together in the file.
  void countValue(int id) {
    const std::size_t filled = std::min(count_, room_);
    for (std::size_t tried = 0; tried < filled; ++tried, last_ = (last_ + 1) % filled) {
      tembra_device device;
      char* const place = begin_ + last_ * deviceSize_;
      std::memcpy(&device.id, place, sizeof device.id);
      if (device.id != id) continue;
      ++reinterpret_cast<tembra_device*>(place)->values;
      return;
    }
  }

  [[nodiscard]] long count() const { return static_cast<long>(count_); }

 private:
  char* begin_;
  std::size_t deviceSize_;
  std::size_t room_;
  std::size_t count_ = 0;
  std::size_t last_ = 0;
};

// Whether the file is whole. Two passes, because a device may stand behind its values.
bool readDevices(depot::File& file, Room& room) {
  static constexpr char kMagic[] = "[depot]\n\f";
  depot::Header header{};
  if (!file.read(0, header) || std::memcmp(header.magic, kMagic, sizeof kMagic) != 0 || header.buckets <= 0)
    return false;
  long long end = header.firstRecord();
  bool isWhole = header.fileSize == file.size() && depot::walk(file, header).isInOrder;
  depot::forEachRecord(file, header, [&](long long offset, const depot::Record& record) {
    end = offset + record.end();
    const Key key = record.isDeleted() ? Key{} : readKey(file, offset, record);
    if (key.kind != Key::kDevice) return true;
    char value[sizeof(DeviceRecord)];
    const std::size_t size = std::min(sizeof value, static_cast<std::size_t>(record.valueSize));
    const bool isRead = file.read(offset + record.keyEnd(), value, size);
    isWhole = isWhole && isRead;
    if (isRead) room.add(describe(key.id, StoredDevice(value, size).record()));
    return true;
  });
  depot::forEachRecord(file, header, [&](long long offset, const depot::Record& record) {
    const Key key = record.isDeleted() ? Key{} : readKey(file, offset, record);
    if (key.kind == Key::kValue) room.countValue(key.id);
    return true;
  });
  return isWhole && end == file.size();
}

// The lock that the Depot library takes to read.
bool lock(int descriptor) {
  struct flock whole = {};
  whole.l_type = F_RDLCK;
  whole.l_whence = SEEK_SET;
  int result = 0;
  do result = fcntl(descriptor, F_SETLKW, &whole);
  while (result != 0 && errno == EINTR);
  return result == 0;
}

bool isRegular(int descriptor) {
  struct stat status = {};
  return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

long refuse(int error) {
  errno = error;
  return -1;
}

long readOpenFile(int descriptor, Room& room) {
  if (!isRegular(descriptor)) return refuse(EBADMSG);
  if (!lock(descriptor)) return -1;
  depot::File file(descriptor);
  return file.size() == 0 || readDevices(file, room) ? room.count() : refuse(EBADMSG);
}

}  // namespace
}  // namespace tembra

long tembra_read_devices(tembra_device* devices, size_t device_size, size_t room) {
  using namespace tembra;
  if (device_size < sizeof(tembra_device)) return refuse(EINVAL);
  const StateUnlocked unlocked;
  const DatabaseTurn turn;
  if (!turn.isOurs()) return refuse(EDEADLK);
  Room callers(devices, device_size, room);
  if (depot::isForeignLink(DBName)) return refuse(ELOOP);
  const depot::OpenFile file(DBName, O_RDONLY);
  if (!file.isOpen()) return errno == ENOENT ? 0 : -1;
  return readOpenFile(file.descriptor(), callers);
}
