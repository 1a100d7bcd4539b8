// Hue devices in the device database, and the list that the library makes of them.
#ifndef TEMBRA_TESTS_IPDEV_HUE_DEVICES_H
#define TEMBRA_TESTS_IPDEV_HUE_DEVICES_H

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kit/router.h"

using OptionalText = std::optional<std::string>;

/// A lamp and its two index records; nullopt for one that is missing.
void putLamp(kit::Database& database, int id, const OptionalText& bridgeId, const OptionalText& user);

/// A wall switch, which keeps the two at other indexes.
void putWallSwitch(kit::Database& database, int id, const OptionalText& bridgeId, const OptionalText& user);

/// Another IP device.
void putSpeaker(kit::Database& database, int id);

/// Bridge number n: its id as the database has it, and its MAC text.
std::string bridgeIdOf(int n);
std::string macOf(int n);

/// The list as it is expected: MAC text and user of each element.
std::string listOf(const std::vector<std::pair<std::string, std::string>>& elements);

/// What the library gives; "null" for nothing.
std::string bridgeListOf(TembraAssociation& assoc);

#endif
