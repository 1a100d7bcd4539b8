// The list of devices for front ends. It only reads: the file's own reader goes through it, not the Depot library.
#include <fcntl.h>
#include <sys/stat.h>
#include <tembra/globals.h>
#include <tembra/platform.h>
#include <tembra/service.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>

#include "database/device_database.h"
#include "depot/open_file.h"
#include "depot/ownership.h"
#include "depot/walk.h"
#include "support/strict_mode.h"
#include "support/text.h"

namespace tembra {
namespace {

enum class Key {
  kDevice,  // "12"
  kValue,   // "12.3", of device 12
  kOther
};

Key readKey(depot::File& file, long long offset, const depot::Record& record, int& id) {
  char text[12];  // the longest id, a point, and one more
  const auto size = static_cast<std::size_t>(record.keySize);
  const std::size_t length = std::min(sizeof text, size);
  if (!file.read(offset + static_cast<long long>(sizeof record), text, length)) return Key::kOther;
  long long number = 0;
  std::size_t digits = 0;
  for (; digits < length && text[digits] >= '0' && text[digits] <= '9'; ++digits) {
    number = number * 10 + (text[digits] - '0');
  }
  if (digits == 0 || number > INT_MAX) return Key::kOther;
  id = static_cast<int>(number);
  if (digits == size) return Key::kDevice;
  return digits < length && text[digits] == '.' ? Key::kValue : Key::kOther;
}

tembra_radio radioOf(const DeviceRecord& record) {
  if (record.radioKind == RADIO_ZWAVE) return TEMBRA_RADIO_ZWAVE;
  if (record.radioKind == RADIO_IP) return TEMBRA_RADIO_IP;
  return record.zigbeeAddress == 0 ? TEMBRA_RADIO_OTHER : TEMBRA_RADIO_ZIGBEE;
}

void describe(tembra_device& device, int id, const DeviceRecord& record) {
  const tembra_radio radio = radioOf(record);
  device.id = id;
  device.radio = radio;
  if (radio == TEMBRA_RADIO_ZWAVE) device.address = record.zwaveNode;
  if (radio == TEMBRA_RADIO_ZIGBEE) device.address = record.zigbeeAddress;
  copyText(device.name, record.name);
  copyText(device.type_name, record.typeName);
  device.type = StrToDevType(device.type_name);
}

// The caller's room, in which a later version's devices may be longer.
class Room {
 public:
  Room(tembra_device* devices, std::size_t deviceSize, std::size_t room)
      : begin_(reinterpret_cast<char*>(devices)), deviceSize_(deviceSize), room_(room) {
    if (room > 0) std::memset(begin_, 0, room * deviceSize);
  }

  void add(int id, const DeviceRecord& record) {
    if (count_ < room_) describe(at(count_), id, record);
    ++count_;
  }

  // The search begins where the last one ended: a device's values mostly stand together in the file.
  void countValue(int id) {
    const std::size_t filled = std::min(count_, room_);
    for (std::size_t tried = 0; tried < filled; ++tried) {
      if (at(last_).id == id) {
        ++at(last_).values;
        return;
      }
      if (++last_ == filled) last_ = 0;
    }
  }

  [[nodiscard]] long count() const { return static_cast<long>(count_); }

 private:
  tembra_device& at(std::size_t i) { return *reinterpret_cast<tembra_device*>(begin_ + i * deviceSize_); }

  char* begin_;
  std::size_t deviceSize_;
  std::size_t room_;
  std::size_t count_ = 0;
  std::size_t last_ = 0;
};

// False when the file ends before the record does.
bool addDevice(depot::File& file, long long offset, const depot::Record& record, int id, Room& room) {
  DeviceRecord stored{};
  const std::size_t size = std::min(sizeof stored, static_cast<std::size_t>(record.valueSize));
  if (!file.read(offset + record.keyEnd(), &stored, size)) return false;
  room.add(id, stored);
  return true;
}

// Whether the file is whole. Two passes, because a device may stand behind its values.
bool readDevices(depot::File& file, Room& room) {
  static constexpr char kMagic[] = "[depot]\n\f";
  depot::Header header{};
  if (!file.read(0, header) || std::memcmp(header.magic, kMagic, sizeof kMagic) != 0) return false;
  bool isWhole = header.buckets > 0 && header.fileSize == file.size() && depot::walk(file, header).isInOrder;
  long long end = 0;
  for (const Key wanted : {Key::kDevice, Key::kValue}) {
    end = header.firstRecord();
    depot::forEachRecord(file, header, [&](long long offset, const depot::Record& record) {
      int id = 0;
      end = offset + record.end();
      if (record.isDeleted() || readKey(file, offset, record, id) != wanted) return true;
      if (wanted == Key::kValue) {
        room.countValue(id);
      } else if (!addDevice(file, offset, record, id, room)) {
        isWhole = false;
      }
      return true;
    });
  }
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

long refuse(int error) {
  errno = error;
  return -1;
}

// ENXIO: a socket, or a device without a driver.
long whyNotOpen() {
  if (errno == ENOENT) return 0;
  return refuse(errno == ENXIO ? EINVAL : errno);
}

// What is no file at all holds no list to be repaired.
int whyNoFile(int descriptor) {
  struct stat status = {};
  if (fstat(descriptor, &status) != 0) return errno;
  if (S_ISREG(status.st_mode)) return 0;
  return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

long readOpenFile(int descriptor, Room& room) {
  if (const int error = whyNoFile(descriptor); error != 0) return refuse(error);
  if (!lock(descriptor)) return -1;
  depot::File file(descriptor);
  return file.size() == 0 || readDevices(file, room) ? room.count() : refuse(EBADMSG);
}

}  // namespace
}  // namespace tembra

// With "create", as the library opens it: the kernel may refuse that where it allows an opening without.
int tembra_check_database() {
  using namespace tembra;
  const StateUnlocked unlocked;
  const DatabaseTurn turn;
  if (!turn.isOurs()) return EDEADLK;
  if (depot::isForeignLink(DBName)) return ELOOP;
  struct stat status = {};
  if (stat(DBName, &status) != 0) return errno == ENOENT ? 0 : errno;
  const depot::OpenFile file(DBName, O_RDWR | O_CREAT);
  return file.isOpen() ? 0 : errno;
}

long tembra_read_devices(tembra_device* devices, size_t deviceSize, size_t room) {
  using namespace tembra;
  if (deviceSize < sizeof(tembra_device)) return refuse(EINVAL);
  const StateUnlocked unlocked;
  const DatabaseTurn turn;
  if (!turn.isOurs()) return refuse(EDEADLK);
  Room callers(devices, deviceSize, room);
  if (isStrict() && depot::isOthers(DBName)) return refuse(EPERM);
  if (depot::isForeignLink(DBName)) return refuse(ELOOP);
  const depot::OpenFile file(DBName, O_RDONLY);
  if (!file.isOpen()) return whyNotOpen();
  if (isStrict() && depot::isOthers(file.descriptor())) return refuse(EPERM);
  return readOpenFile(file.descriptor(), callers);
}
