// The classification rules of ZigBee devices, from the tables that the library decides by.
#include <tembra/rules.h>

#include <fstream>
#include <string>

#include "docs/pages.h"
#include "frontend/zigbee_rule_texts.h"

namespace {

using tembra::frontend::entriesText;
using tembra::frontend::hex4;
using tembra::frontend::outcomeText;
using tembra::frontend::testsText;

void writeClusters(std::ostream& out) {
  out << "\n## Clusters\n\n| Cluster | What | Index entries | Counted |\n|---|---|---|---|\n";
  for (const ZbClusterRule& row : zbClusterRules) {
    const bool zone = row.cluster == ZB_IAS_ZONE;
    out << "| " << hex4(row.cluster) << " | " << row.title << " | "
        << (zone ? "see IAS zones" : entriesText(row.entries)) << " | "
        << (zone          ? "see IAS zones"
            : row.counted ? "yes"
                          : "no")
        << " |\n";
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

void writeZones(std::ostream& out) {
  out << "\n## IAS zones\n\nA zone directly followed by cluster " << hex4(ZB_IAS_CAMERA) << " is a camera (entries "
      << entriesText(zbCameraEntries) << ", not counted), one followed by " << hex4(ZB_IAS_ATTACHED)
      << " is ignored.\n\n| Zone type | When | Device-type name |\n|---|---|---|\n";
  for (const ZbZoneName& row : zbZoneNames) {
    out << "| " << hex4(row.zoneType) << " | " << testsText(row.test) << " | " << row.name << " |\n";
  }
  out << "\n| Device-type name | When | Named |\n|---|---|---|\n";
  for (const ZbZoneDisplayName& row : zbZoneDisplayNames) {
    out << "| " << (row.zoneName == nullptr ? "any" : row.zoneName) << " | " << testsText(row.tests[0], row.tests[1])
        << " | " << row.displayed << " |\n";
  }
  out << "\n| Type | When | Index entries |\n|---|---|---|\n";
  for (const ZbZoneEntries& row : zbZoneEntries) {
    out << "| " << (row.type < 0 ? "any other" : std::to_string(row.type)) << " | " << testsText(row.test) << " | "
        << entriesText(row.entries) << " |\n";
  }
}

}  // namespace

bool docs::writeZigbeeRules(const std::filesystem::path& path) {
  std::ofstream out(path);
  out << "# ZigBee classification rules\n\nMade by `make-docs` from `<tembra/rules.h>`; do not edit.\n\n"
         "A device's clusters are visited in order; each adds its index entries, then the first decision of the "
         "cluster\n"
         "that applies names the device and sets its type. A device that is undecided (type 0) at the end is a\n"
         "GenericDevice, type 60.\n";
  writeClusters(out);
  writeDecisions(out);
  writeZones(out);
  return static_cast<bool>(out.flush());
}
