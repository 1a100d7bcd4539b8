// The classification rules of ZigBee devices, from the tables that the library decides by.
#include <tembra/rules.h>

#include <fstream>
#include <string>

#include "docs/pages.h"
#include "words/zigbee_rule_texts.h"

namespace {

using tembra::words::entriesText;
using tembra::words::hex4;
using tembra::words::outcomeText;
using tembra::words::testsText;

const char* counted(bool is) { return is ? "yes" : "no"; }

void writeClusters(std::ostream& out) {
  out << "\n## Clusters\n\n| Cluster | What | Index entries | Counted |\n|---|---|---|---|\n";
  for (const ZbClusterRule& row : zbClusterRules) {
    const bool zone = row.cluster == ZB_IAS_ZONE;
    out << "| " << hex4(row.cluster) << " | " << row.title << " | "
        << (zone ? "see IAS zones" : entriesText(row.entries)) << " | "
        << (zone ? "see IAS zones" : counted(row.counted)) << " |\n";
  }
}

void writeDecisions(std::ostream& out) {
  out << "\n## Decisions\n\nThe first row of the cluster that applies.\n\n| Cluster | When | Decision "
         "|\n|---|---|---|\n";
  for (const ZbDecision& row : zbDecisions) {
    out << "| " << hex4(row.cluster) << " | " << testsText(row.tests[0], row.tests[1]) << " | " << outcomeText(row)
        << " |\n";
  }
}

std::string zoneText(ZbZoneOutcome outcome) {
  switch (outcome) {
    case ZB_ZONE_CAMERA:
      return "a camera: index entries " + entriesText(zbCameraEntries) + ", name \"ZigbeeCamImage\", type 67";
    case ZB_ZONE_IGNORED:
      return "ignored";
    case ZB_ZONE_CLASSIFIED:
      return "classified by its zone type";
  }
  return "";
}

void writeZoneCases(std::ostream& out) {
  out << "\n## IAS zones\n\nThe first row that applies. Of a camera's entries only the first " << ZB_CAMERA_ENDPOINTS
      << " get the zone's endpoint.\n\n| Next cluster | When | What it is | Counted |\n|---|---|---|---|\n";
  for (const ZbZoneCase& row : zbZoneCases) {
    out << "| " << (row.next == ZB_ANY_CLUSTER ? "any" : hex4(row.next)) << " | " << testsText(row.test) << " | "
        << zoneText(row.outcome) << " | " << counted(row.counted) << " |\n";
  }
}

void writeZoneNames(std::ostream& out) {
  out << "\nThe device-type name of a zone type; its number is the zone's type. Any other zone type is an "
         "UnknownDevice.\n\n| Zone type | When | Device-type name |\n|---|---|---|\n";
  for (const ZbZoneName& row : zbZoneNames) {
    out << "| " << hex4(row.zoneType) << " | " << testsText(row.test) << " | " << row.name << " |\n";
  }
  out << "\nZones that are of another type. The log has the line whatever the endpoint.\n\n"
         "| When | On endpoint | Type | Line |\n|---|---|---|---|\n";
  for (const ZbZoneTypeException& row : zbZoneTypeExceptions) {
    out << "| " << testsText(row.test) << " | " << row.endpoint << " | " << row.type << " | `" << row.log << "` |\n";
  }
}

void writeZoneEntries(std::ostream& out) {
  out << "\n| Type | When | Index entries |\n|---|---|---|\n";
  for (const ZbZoneEntries& row : zbZoneEntries) {
    out << "| " << (row.type < 0 ? "any other" : std::to_string(row.type)) << " | " << testsText(row.test) << " | "
        << entriesText(row.entries) << " |\n";
  }
}

void writeZoneDisplayNames(std::ostream& out) {
  out << "\nA device is named by its device-type name, except:\n\n"
         "| Device-type name | When | Named |\n|---|---|---|\n";
  for (const ZbZoneDisplayName& row : zbZoneDisplayNames) {
    out << "| " << (row.zoneName == nullptr ? "any" : row.zoneName) << " | " << testsText(row.tests[0], row.tests[1])
        << " | " << row.displayed << " |\n";
  }
}

std::string lineText(const char* line) {
  if (line == nullptr) return "none";
  std::string text = "`";
  return text.append(line).append("`");
}

void writeZoneAfterwards(std::ostream& out) {
  out << "\nAfterwards, by the first row that applies. The entries are those from the next one to be written down to "
         "entry 0.\nThese two hold what was received.\n\n| When | For each entry | Type | Line "
         "|\n|---|---|---|---|\n";
  for (const ZbZoneAfterwards& row : zbZoneAfterwards) {
    out << "| " << testsText(row.test) << " | " << (row.entry == 0 ? "once" : std::to_string(row.entry)) << " | "
        << row.type << " | " << lineText(row.log) << " |\n";
  }
}

}  // namespace

bool docs::writeZigbeeRules(const std::filesystem::path& path) {
  std::ofstream out(path);
  out << "# ZigBee classification rules\n\nMade by `make-docs` from `<tembra/rules.h>`; do not edit.\n\n"
         "A device's clusters are visited in order. Each cluster adds its index entries. Then the first decision of "
         "the\n"
         "cluster that applies names the device and sets its type. A device that is undecided (type 0) at the end is\n"
         "a GenericDevice, type 60. \"Counted\" clusters are those whose number the log tells in the end.\n";
  writeClusters(out);
  writeDecisions(out);
  writeZoneCases(out);
  writeZoneNames(out);
  writeZoneEntries(out);
  writeZoneDisplayNames(out);
  writeZoneAfterwards(out);
  return static_cast<bool>(out.flush());
}
