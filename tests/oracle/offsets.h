// Where things stand in the records, and the numbers of the servers.
#ifndef TEMBRA_TESTS_ORACLE_OFFSETS_H
#define TEMBRA_TESTS_ORACLE_OFFSETS_H

#include <cstddef>

namespace oracle {

/// As destinations of datagrams and as sources of events.
enum Server : int { kZigbee = 1, kZwave = 2, kHue = 3, kNest = 4, kHa = 5 };

inline constexpr int kGenericDevice = 60;

/// Names and locations, wherever they have room of their own.
inline constexpr std::size_t kTextField = 180;

// An event.
inline constexpr std::size_t kEventCode = 0;
inline constexpr std::size_t kEventSource = 4;
inline constexpr std::size_t kPayload = 8;

// A device report.
inline constexpr std::size_t kReportName = 0;
inline constexpr std::size_t kReportLocation = 180;
inline constexpr std::size_t kReportRemovedName = 360;
inline constexpr std::size_t kReportRemovedId = 540;
inline constexpr std::size_t kReportType = 544;
inline constexpr std::size_t kReportStatus = 556;
inline constexpr std::size_t kReportFailure = 560;
inline constexpr std::size_t kReportList = 564;
inline constexpr std::size_t kReportListLength = 200;
inline constexpr std::size_t kReportJson = 764;

// A Z-Wave node's block.
inline constexpr std::size_t kNodeClasses = 1;
inline constexpr std::size_t kNodeBasic = 54;
inline constexpr std::size_t kNodeGeneric = 55;
inline constexpr std::size_t kNodeSpecific = 56;
inline constexpr std::size_t kNodeValues = 57;
inline constexpr std::size_t kNodeKind = 600;
inline constexpr std::size_t kNodeFinalType = 604;
inline constexpr std::size_t kNodeProposedType = 608;
inline constexpr std::size_t kNodeName = 612;
inline constexpr std::size_t kNodeLocation = 792;
inline constexpr std::size_t kNodeMark = 972;
inline constexpr std::size_t kNodeIndexes = 973;

// A ZigBee device's description.
inline constexpr std::size_t kZigbeeMessage = 10;
inline constexpr std::size_t kZigbeeClusters = 12;
inline constexpr std::size_t kZigbeeMaker = 132;
inline constexpr std::size_t kZigbeeType = 212;
inline constexpr std::size_t kZigbeeZone = 214;
inline constexpr std::size_t kZigbeeModel = 296;
inline constexpr std::size_t kZigbeeIndexCount = 318;
inline constexpr std::size_t kZigbeeName = 378;
inline constexpr std::size_t kZigbeeLocation = 410;

// A device record and an index record of the database.
inline constexpr std::size_t kDeviceId = 0;
inline constexpr std::size_t kDeviceName = 4;
inline constexpr std::size_t kDeviceNode = 364;
inline constexpr std::size_t kDeviceAddress = 368;
inline constexpr std::size_t kDeviceKind = 400;
inline constexpr std::size_t kDeviceTypeName = 440;
inline constexpr std::size_t kIndexValue = 34;

}  // namespace oracle

#endif
