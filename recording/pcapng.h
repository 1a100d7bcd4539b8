// Numbers of the pcapng format.
#ifndef TEMBRA_RECORDING_PCAPNG_H
#define TEMBRA_RECORDING_PCAPNG_H

#include <cstdint>

namespace tembra::recording {

// Blocks.
inline constexpr std::uint32_t kSection = 0x0A0D0D0A;
inline constexpr std::uint32_t kInterface = 1;
inline constexpr std::uint32_t kOldPacket = 2;
inline constexpr std::uint32_t kSimplePacket = 3;
inline constexpr std::uint32_t kStatistics = 5;
inline constexpr std::uint32_t kPacket = 6;

inline constexpr std::uint32_t kByteOrder = 0x1A2B3C4D;  // in the byte order of the section

// Options.
inline constexpr std::uint16_t kEndOfOptions = 0;
inline constexpr std::uint16_t kComment = 1;
inline constexpr std::uint16_t kResolution = 9;  // of an interface's clock

}  // namespace tembra::recording

#endif
