#include "cli/record/capture.h"

#include <dlfcn.h>
#include <sys/time.h>

#include <cstdint>

#include "cli/failure.h"

// What libpcap's own headers declare; its binary interface has been the same since version 1.0.
extern "C" {
struct pcap_t;
struct PcapHeader {
  timeval time;
  std::uint32_t captured;
  std::uint32_t length;
};
struct PcapProgram {
  unsigned length;
  void* instructions;
};
struct PcapStatistics {
  unsigned received;
  unsigned dropped;
  unsigned droppedByInterface;
};
}

namespace tembra::cli {
namespace {

constexpr char kFilter[] = "udp and net 127.255.255.0/24";
constexpr int kLongestPacket = 262144;
constexpr int kRoom = 4 << 20;
constexpr int kEthernet = 1;
constexpr std::size_t kEthernetHeader = 14;
constexpr int kOptimize = 1;
constexpr std::uint32_t kNoMask = 0xFFFFFFFF;
constexpr char kInstead[] = " --events records events and log lines alone.";

}  // namespace

struct Pcap {
  void* library = nullptr;
  pcap_t* handle = nullptr;
  pcap_t* (*create)(const char*, char*) = nullptr;
  int (*setLongest)(pcap_t*, int) = nullptr;
  int (*setRoom)(pcap_t*, int) = nullptr;
  int (*setImmediate)(pcap_t*, int) = nullptr;
  int (*activate)(pcap_t*) = nullptr;
  int (*linkType)(pcap_t*) = nullptr;
  int (*compile)(pcap_t*, PcapProgram*, const char*, int, std::uint32_t) = nullptr;
  int (*setFilter)(pcap_t*, PcapProgram*) = nullptr;
  void (*freeProgram)(PcapProgram*) = nullptr;
  int (*setNonBlocking)(pcap_t*, int, char*) = nullptr;
  int (*descriptor)(pcap_t*) = nullptr;
  int (*next)(pcap_t*, PcapHeader**, const unsigned char**) = nullptr;
  int (*statistics)(pcap_t*, PcapStatistics*) = nullptr;
  char* (*error)(pcap_t*) = nullptr;
  void (*close)(pcap_t*) = nullptr;

  Pcap() { load(); }
  ~Pcap() {
    if (handle != nullptr) close(handle);
    dlclose(library);
  }
  Pcap(const Pcap&) = delete;
  Pcap& operator=(const Pcap&) = delete;

  template <typename Function>
  void find(Function& function, const char* name) const {
    function = reinterpret_cast<Function>(dlsym(library, name));
    if (function == nullptr) throw Failure(kFailed, std::string("libpcap is too old: no ") + name + "." + kInstead);
  }

  void load() {
    for (const char* name : {"libpcap.so.1", "libpcap.so.0.8", "libpcap.so"}) {
      if (library == nullptr) library = dlopen(name, RTLD_NOW | RTLD_LOCAL);
    }
    if (library == nullptr) {
      throw Failure(kFailed, std::string("libpcap, which records datagrams, is not installed.") + kInstead);
    }
    find(create, "pcap_create");
    find(setLongest, "pcap_set_snaplen");
    find(setRoom, "pcap_set_buffer_size");
    find(setImmediate, "pcap_set_immediate_mode");
    find(activate, "pcap_activate");
    find(linkType, "pcap_datalink");
    find(compile, "pcap_compile");
    find(setFilter, "pcap_setfilter");
    find(freeProgram, "pcap_freecode");
    find(setNonBlocking, "pcap_setnonblock");
    find(descriptor, "pcap_get_selectable_fd");
    find(next, "pcap_next_ex");
    find(statistics, "pcap_stats");
    find(error, "pcap_geterr");
    find(close, "pcap_close");
  }

  void open() {
    char message[256] = {};
    handle = create("lo", message);
    if (handle == nullptr) fail(message);
    setLongest(handle, kLongestPacket);
    setRoom(handle, kRoom);
    setImmediate(handle, 1);
    if (activate(handle) < 0) fail("Root may record. " + std::string(error(handle)));
    if (linkType(handle) != kEthernet) fail("The interface is of another kind.");
    if (setNonBlocking(handle, 1, message) != 0) fail(message);
    PcapProgram program{};
    if (compile(handle, &program, kFilter, kOptimize, kNoMask) != 0) fail(error(handle));
    const int failure = setFilter(handle, &program);
    freeProgram(&program);
    if (failure != 0) fail(error(handle));
  }

  [[noreturn]] static void fail(std::string why) {
    if (!why.empty() && why.back() != '.') why += '.';
    throw Failure(kFailed, "the loopback interface cannot be recorded. " + why + kInstead);
  }
};

Capture::Capture() : pcap_(std::make_unique<Pcap>()) { pcap_->open(); }

Capture::~Capture() = default;

int Capture::descriptor() const { return pcap_->descriptor(pcap_->handle); }

void Capture::read(const std::function<void(Datagram)>& onDatagram) {
  PcapHeader* header = nullptr;
  const unsigned char* bytes = nullptr;
  int result = 0;
  while ((result = pcap_->next(pcap_->handle, &header, &bytes)) == 1) {
    if (header->captured < kEthernetHeader) continue;
    auto datagram = datagramIn({bytes + kEthernetHeader, header->captured - kEthernetHeader});
    if (!datagram) continue;
    datagram->time = header->time.tv_sec * 1000000LL + header->time.tv_usec;
    onDatagram(*std::move(datagram));
  }
  if (result < 0) Pcap::fail(pcap_->error(pcap_->handle));
}

unsigned Capture::lost() const {
  PcapStatistics statistics{};
  return pcap_->statistics(pcap_->handle, &statistics) == 0 ? statistics.dropped : 0;
}

}  // namespace tembra::cli
