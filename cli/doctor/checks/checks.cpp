#include "cli/doctor/checks/checks.h"

namespace tembra::cli::doctor {
namespace {

constexpr Check kChecks[] = {
    {"loopback", "Are the loopback addresses of library and daemons there?", checkLoopback},
    {"datagram", "Can a datagram be sent?", checkDatagram},
    {"route-localnet", "Are the daemons out of reach of other machines?", checkRouteLocalnet},
    {"lost-datagrams", "Did every datagram find room at its receiver?", checkLostDatagrams},
    {"server-ha", "Does the HA server listen?", checkHaServer},
    {"server-zwave", "Does the Z-Wave server listen?", checkZwaveServer},
    {"server-zigbee", "Does the ZigBee server listen?", checkZigbeeServer},
    {"server-hue", "Does the Hue server listen?", checkHueServer},
    {"server-nest", "Does the Nest server listen?", checkNestServer},
    {"port", "Is the front ends' address free, or a front end's?", checkPort},
    {"connection", "Who has the connection, and since when?", checkConnection},
    {"watch-socket", "Can front ends be watched?", checkWatchSocket},
    {"database", "Is the device database there?", checkDatabase},
    {"database-owner", "Does it belong to the user of those who use it?", checkDatabaseOwner},
    {"database-mode", "May only its user write it?", checkDatabaseMode},
    {"database-access", "Can a front end of this user open it?", checkDatabaseAccess},
    {"database-protection", "Does the kernel let front ends open it (fs.protected_regular)?", checkDatabaseProtection},
    {"database-lock", "Is its lock free?", checkDatabaseLock},
    {"database-room", "Is there room to write and repair it?", checkDatabaseRoom},
    {"database-repair", "Is the name free that a repair needs?", checkDatabaseRepair},
    {"database-damage", "Is it whole?", checkDatabaseDamage},
    {"database-ids", "Has each device an id of its own?", checkDatabaseIds},
    {"database-next-id", "Is the next id behind the largest?", checkDatabaseNextId},
    {"database-radios", "Is the radio of each device known?", checkDatabaseRadios},
    {"database-addresses", "Has each device a radio address of its own?", checkDatabaseAddresses},
    {"database-types", "Is the type of each device known?", checkDatabaseTypes},
    {"hue-users", "Has each Hue device its bridge and user?", checkHueUsers},
    {"nvram", "Does nvram_get give the mesh id?", checkNvram},
    {"platform", "Whose platform libraries are used?", checkPlatform},
    {"platform-names", "Does the device-type library know the needed names?", checkPlatformNames},
    {"versions", "Do library, kit and programs fit each other?", checkVersions},
    {"program-names", "Has the program of --program names of its own only?", checkProgramNames},
    {"clock", "Was the clock left alone?", checkClock},
    {"last-failure", "What failed last, as far as the flight recorder knows?", checkLastFailure},
};

}  // namespace

std::span<const Check> allChecks() { return kChecks; }

}  // namespace tembra::cli::doctor
